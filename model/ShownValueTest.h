// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>

class TavRegistryEntry;

// Whether an entry has a value whose text as shown matches a search. Given to the search, because
// the texts are up to the display. Each thread uses its own copy.
using ShownValueTest = std::function<bool(const TavRegistryEntry &)>;
