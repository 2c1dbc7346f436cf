// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/linux/RawObject.h"

// The attributes that names, classes, states, planes and searches for devices depend on.
class StructuralAttributes
{
public:
    // Path: below the object's directory, such as "power/runtime_status".
    static bool contains(const RawObject &object, const QByteArray &subsystem, bool hasModalias,
                         const QByteArray &path);
};
