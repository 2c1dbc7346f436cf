// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "store/filter/FilterNode.h"

class TavRegistryEntry;

// The facts of an entry that filter expressions know by name.
namespace FilterFields {
const QStringList &names();
std::optional<FilterField::Kind> fieldNamed(QStringView name);
const QStringList &stateWords(); // the values of "state"

// Whether any value of the fact satisfies the predicate. Reads no properties; in any thread.
bool any(const TavRegistryEntry &entry, FilterField::Kind kind,
         const std::function<bool(const RegistryValue &)> &predicate);
// Whether the entry has the name, alone, with its location, or as the kernel writes the two.
bool isNamed(const TavRegistryEntry &entry, QStringView name);
} // namespace FilterFields
