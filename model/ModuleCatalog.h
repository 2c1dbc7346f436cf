// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>
#include <vector>

// The modules that a kernel has on disk, loaded or not, and those that are built into it. Any
// thread.
class ModuleCatalog
{
public:
    struct Module
    {
        QString name;
        bool isBuiltIn = false;
        bool isBlocked = false; // the configuration of the machine keeps it from being loaded
    };

    virtual ~ModuleCatalog() = default;
    // For a device's modalias, such as "usb:v046Dp…"; the ones that modprobe would take.
    virtual std::vector<Module> modulesFor(const QString &modalias) const = 0;
};
