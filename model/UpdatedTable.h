// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/RegistryValue.h"

#include <span>

// The table with the values that were read, or itself if they are the same. What was not read
// stays; what the table does not have is left out.
RegistryValue updatedTable(const RegistryValue &table, std::span<const RegistryValue::Member> read);
