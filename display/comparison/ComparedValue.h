// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/TavRegistryProperty.h"

// Nodes of compared property trees. A node that is gone is a copy without its type.
namespace ComparedValue {
// A node with the type. Null: the given one has it.
PropertyRef typed(const TavRegistryProperty &node);
// The value, with all that was in it.
RegistryValue of(const TavRegistryProperty &node);
} // namespace ComparedValue
