#pragma once

#include "model/TavRegistryProperty.h"

// What a property is called in a sentence: its key, or "list[2]" for what has none.
namespace PropertyTitle {
QString of(const TavRegistryProperty &property);
} // namespace PropertyTitle
