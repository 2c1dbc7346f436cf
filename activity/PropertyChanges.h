// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/RegistryValue.h"

#include <QString>

// The scalars that differ between two property tables of an object.
struct PropertyChange
{
    QString key;          // "power/runtime_status"
    RegistryValue before; // none: it was not there
    RegistryValue after;  // none: it is gone

    // In the order of the keys. Lists are compared as a whole.
    static std::vector<PropertyChange> between(const RegistryValue &before,
                                               const RegistryValue &after);
};
