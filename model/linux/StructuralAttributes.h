// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/linux/RawObject.h"

// The attributes of one object that names, classes, states, planes and searches for devices depend
// on.
class StructuralAttributes
{
public:
    StructuralAttributes() = default;
    explicit StructuralAttributes(QByteArray subsystem);
    void noteUevent(const RegistryValue &uevent); // others repeat what it has

    // Path: below the object's directory, such as "power/runtime_status".
    bool contains(const RawObject &object, const QByteArray &path) const;
    // Whether the kernel has only other attributes in a folder of the object: no links, no objects.
    bool noneIn(const RawObject &object, const QByteArray &folder) const;

private:
    QByteArray subsystem_;
    bool hasModalias_ = false; // in uevent, as the device number
    bool hasNumber_ = false;
};
