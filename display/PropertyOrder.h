// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/TavRegistryProperty.h"

// The orders in which the properties of one container can be shown.
class PropertyOrder
{
public:
    enum class By { Name, Type, Value };

    static bool precedes(By by, const TavRegistryProperty &a, const TavRegistryProperty &b);
};
