#pragma once

#include "store/TavDataStore.h"

#include <string>

// Turns stores into text, so that two are the same exactly when their texts are.
class StorePrinter
{
public:
    // Everything that a document keeps. Entries are named by their place in the table.
    static std::string print(const TavDataStore &store);
    // What the registry is at this moment, whatever the store has been through: who is whose child
    // under which name, and with that all facts of every entry.
    static std::string planes(const TavDataStore &store);
    static std::string registry(const TavDataStore &store);
};
