// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/RegistryValue.h"
#include "model/linux/SysfsPath.h"

#include <QHash>
#include <vector>

// What was read of one directory: an object of the host, not yet placed in any plane.
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
        QByteArray name; // path below the object's directory, such as "slaves/sda1"
        SysfsPath target;
    };
    struct Unread
    {
        QByteArray path; // below the object's directory, or itself
        QByteArray reason;
        bool isOnRequest = false; // may be read when the user asks for it
    };
    struct Requested
    {
        QByteArray path; // below the object's directory
        RegistryValue value;
    };
    static constexpr char itself[] = "."; // the path of the object's own directory
    // The reasons of an attribute that was waited for, and of those skipped after it.
    static constexpr char noAnswer[] = "did not answer";
    static constexpr char notAsked[] = "not asked, because the device does not answer";
    // Prefix of the reason when the policy forbids reading.
    static constexpr char leftOut[] = "not read: ";
    static bool isUnanswered(const QByteArray &reason)
    {
        return reason == noAnswer || reason == notAsked;
    }

    Kind kind = Kind::Device;
    quint64 inode = 0;
    SysfsPath path;
    QByteArray kernelName;
    quint64 driverLinkInode = 0; // of a bound device
    RegistryValue::Members members;
    std::vector<Link> links; // those with a target in the tree
    std::vector<Unread> unread;
    std::vector<Requested> requested; // instead of members, when reading on request

    SysfsPath link(QByteArrayView name) const // its target; null: no such link
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
    // The text also of an attribute that parsed as a number or boolean.
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
