// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/DeviceNames.h"

struct udev;
struct udev_hwdb;

// The names in the udev daemon's compiled hardware database. Without names, and logged once, when
// it cannot be read.
class UdevHardwareNames : public DeviceNameSource
{
public:
    UdevHardwareNames();

    DeviceName nameOf(const QString &modalias) override;

private:
    QString classOf(const QString &modalias);

    struct Release
    {
        void operator()(udev *context) const;
        void operator()(udev_hwdb *database) const;
    };

    std::unique_ptr<udev, Release> context_;
    std::unique_ptr<udev_hwdb, Release> database_; // null: none
    QHash<QString, QString> classes_;              // by the part of the modalias that decides
};
