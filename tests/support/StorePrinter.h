// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "store/TavDataStore.h"

#include <string>

// Prints stores as text: stores are equal exactly when their texts are.
class StorePrinter
{
public:
    // Everything that a document saves. Entries are named by their index in the table.
    static std::string print(const TavDataStore &store);
    // The current registry, regardless of the store's history: who is whose child under which name,
    // and all facts of every entry.
    static std::string planes(const TavDataStore &store);
    static std::string registry(const TavDataStore &store);
    static std::string structure(const TavDataStore &store); // the same without properties

private:
    static std::string registry(const TavDataStore &store, bool hasProperties);
};
