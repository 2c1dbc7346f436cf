// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/RegistryValue.h"

#include <QHash>

class FilterExpression;
class TavDataStore;

// The devices of a registry at one moment, by their kernel paths.
class DevicePicture
{
public:
    struct Device
    {
        quint64 id = 0;
        QString path;   // in the plane DxService
        QString driver; // null: not bound
        RegistryValue properties;
        bool isMatch = true; // of the filter
    };

    // Null filter: all are matches.
    DevicePicture(TavDataStore &store, const FilterExpression *filter);

    const QHash<QString, Device> &devices() const { return devices_; }
    const Device *at(const QString &kernelPath) const; // null: none

private:
    QHash<QString, Device> devices_;
};
