// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "store/TavDataStore.h"

#include <string>

// Prints a captured registry as indented text, two spaces a level, so that a test is one comparison
// with a readable difference.
class TreePrinter
{
public:
    // "name@location", with " (new)" or " (terminated)" where an entry is.
    static std::string plane(const TavDataStore &store, const QString &plane);
    // "name: value", with " (new)", " (changed)" or " (terminated)" where a node is. A value is
    // 5 (4 bytes), "text", <0102>, true, an ISO date, null, or the word for a collection.
    static std::string properties(const TavRegistryProperty &top);
};
