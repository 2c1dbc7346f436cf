// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/linux/SysfsPath.h"

#include <QList>

// Which attributes of an object may be read, by the rules in resources/attributes/policy.json. A
// read runs driver code: some attributes are slow, some wake or lock up hardware, and one creates a
// device.
class AttributePolicy
{
public:
    enum class Rule : quint8 { Always, OnRequest, Never };
    enum class Folder : quint8 { Device, Bus, Class, Driver, Module, Firmware };

    struct Context
    {
        Folder folder = Folder::Device;
        // Of a device:
        QByteArray subsystem = {};
        QByteArray driver = {};
        SysfsPath path = {};
        bool isInterfaceDown = false; // of a network interface
        bool isSuspended = false;     // of a PCI device
    };

    explicit AttributePolicy(Context context);

    // The folder is relative to the object's directory, such as "power"; empty for itself.
    Rule rule(const QByteArray &folder, const QByteArray &name) const;
    // Why it is not read with all others, for the user; null if it is read or has no stated reason.
    QByteArray reason(const QByteArray &folder, const QByteArray &name) const;
    // Whether a subdirectory of an object in that folder is not entered.
    static bool skipsDirectory(Folder folder, const QByteArray &name);

    static constexpr int configBytes = 64; // the part of PCI "config" that is safe to read

private:
    struct Row;
    struct Directories;
    struct Table;
    static const Table &table();
    using Rows = QList<const Row *>; // shared, not copied
    static Rows rowsThatFit(const QByteArray &folder, const QByteArray &name);
    const Row *row(const QByteArray &folder, const QByteArray &name) const;

    Context context_;
};
