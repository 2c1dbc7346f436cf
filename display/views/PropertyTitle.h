// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/TavRegistryProperty.h"

// A property's name in a sentence: its key, or "list[2]" without one.
namespace PropertyTitle {
QString of(const TavRegistryProperty &property);
} // namespace PropertyTitle
