#pragma once

#include "model/RegistryValue.h"
#include "model/linux/SysfsPath.h"

#include <QHash>
#include <vector>

// What a reading found in one directory: an object of the host, not yet placed in any plane.
struct RawObject
{
    enum class Kind : quint8 {
        Root,
        Host,
        Device,
        Container,
        Binding,
        Bus,
        Class,
        Driver,
        Module,
        FirmwareNode,
    };
    struct Link
    {
        QByteArray name; // with its path below the object's directory, such as "slaves/sda1"
        SysfsPath target;
    };
    struct Unread
    {
        QByteArray path; // below the object's directory, or that itself
        QByteArray reason;
        bool isOnRequest = false; // may be read when the user asks for it
    };
    struct Requested
    {
        QByteArray path; // below the object's directory
        RegistryValue value;
    };
    static constexpr char itself[] = "."; // the path of the object's own directory
    // Reasons of what cost a wait, and of what was let be after it.
    static constexpr char noAnswer[] = "did not answer";
    static constexpr char notAsked[] = "not asked, because the device does not answer";
    // What a reason begins with that is none of the device's own: the attribute may not be read.
    static constexpr char leftOut[] = "not read: ";
    static bool isUnanswered(const QByteArray &reason)
    {
        return reason == noAnswer || reason == notAsked;
    }

    Kind kind = Kind::Device;
    quint64 inode = 0;
    SysfsPath path;
    QByteArray kernelName;
    quint64 driverLinkInode = 0; // of a device that is bound
    RegistryValue::Members members;
    std::vector<Link> links; // those that lead to somewhere in the tree
    std::vector<Unread> unread;
    std::vector<Requested> requested; // instead of the members, when reading on request

    SysfsPath link(QByteArrayView name) const // where it leads; null: there is none
    {
        for (const Link &candidate : links) {
            if (candidate.name == name)
                return candidate.target;
        }
        return {};
    }
    const RegistryValue &member(QStringView name) const
    {
        static const RegistryValue none{};
        for (const auto &candidate : members) {
            if (QStringView(candidate.key.data(), candidate.key.size()) == name)
                return candidate.value;
        }
        return none;
    }
    // An attribute whose text happens to read as a number or truth is a text still.
    QString text(QStringView name) const
    {
        const RegistryValue &value = member(name);
        switch (value.type()) {
        case RegistryValue::Type::Number:
            return value.isSignedNumber() ? QString::number(value.signedNumber())
                                          : QString::number(value.numberBits());
        case RegistryValue::Type::Boolean:
            return value.toBoolean() ? QStringLiteral("Y") : QStringLiteral("N");
        default:
            return value.toString();
        }
    }
};
