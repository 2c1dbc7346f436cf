#pragma once

#include <QByteArray>

// Which attributes may be read. A read runs driver code: some attributes are slow, some wake or
// lock up hardware, and one creates a device.
class AttributePolicy
{
public:
    enum class Rule : quint8 { Always, OnRequest, Never };
    enum class Folder : quint8 { Device, Bus, Class, Driver, Module, Firmware };

    struct Context
    {
        Folder folder = Folder::Device;
        QByteArray subsystem;         // of the device
        bool isInterfaceDown = false; // of a network interface
        bool isSuspended = false;     // known only when reading on request
    };

    // The folder is relative to the object's directory, such as "power"; empty for itself.
    static Rule rule(const Context &context, const QByteArray &folder, const QByteArray &name);
    // Whether a subdirectory is passed over with all it holds.
    static bool skipsDirectory(const QByteArray &name);

    static constexpr int configBytes = 64; // the part of PCI "config" that is safe to read
};
