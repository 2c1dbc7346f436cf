// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/DeviceName.h"

#include <QHash>
#include <mutex>

// A hardware database. One thread at a time.
class DeviceNameSource
{
public:
    virtual ~DeviceNameSource() = default;
    // Of the devices with a modalias such as "usb:v1D6Bp0002"; empty when it is unknown.
    virtual DeviceName nameOf(const QString &modalias) = 0;
};

// The names from a hardware database, each looked up once: most devices share few. Any thread.
class DeviceNames
{
public:
    explicit DeviceNames(std::unique_ptr<DeviceNameSource> source);

    DeviceNameRef nameOf(const QString &modalias); // never null

private:
    // Longer ones come from damaged files only, and matching them could take long.
    static constexpr qsizetype maxModaliasSize = 2048;

    std::mutex mutex_;
    std::unique_ptr<DeviceNameSource> source_;
    QHash<QString, DeviceNameRef> known_;
    DeviceNameRef none_ = std::make_shared<DeviceName>();
};
