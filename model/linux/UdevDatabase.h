// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/linux/AttributeParser.h"
#include "model/linux/FileDescriptor.h"

#include <QByteArray>

struct HostObject;

// The udev daemon's records, one file per device, stored beside the tree's root.
class UdevDatabase
{
public:
    // For a tree at ".../sys" the records are in ".../run/udev/data".
    explicit UdevDatabase(const QByteArray &sysfsFolder);

    bool exists() const { return static_cast<bool>(directory_); }
    bool isDaemonRunning() const { return isDaemonRunning_; }
    // A dictionary of links, tags and properties; none if there is no record.
    RegistryValue record(const HostObject &device);
    // Whether the daemon keeps records of devices like this.
    static bool expectsRecord(const HostObject &device);

private:
    static QByteArray recordName(const HostObject &device);

    FileDescriptor directory_;
    bool isDaemonRunning_ = false;
    TextPool pool_;
};
