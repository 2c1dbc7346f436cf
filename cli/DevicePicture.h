// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/RegistryValue.h"

#include <QHash>
#include <QSet>

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

    DevicePicture() = default;
    // Null filter: all are matches.
    DevicePicture(TavDataStore &store, const FilterExpression *filter);

    const QHash<QString, Device> &devices() const { return devices_; }
    void add(const QString &kernelPath, const Device &device);
    void addSubsystem(const QByteArray &name) { subsystems_.insert(name); }

    const Device *at(const QString &kernelPath) const; // null: none
    const Device *withID(quint64 id) const;            // null: none
    bool hasSubsystem(const QByteArray &name) const { return subsystems_.contains(name); }

private:
    QHash<QString, Device> devices_;
    QHash<quint64, QString> kernelPaths_; // by ID
    QSet<QByteArray> subsystems_;         // buses and classes
};
