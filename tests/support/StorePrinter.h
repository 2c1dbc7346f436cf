#pragma once

#include "store/TavDataStore.h"

#include <string>

// Turns everything that a document keeps of a store into text, so that two stores are the same
// exactly when their texts are. Entries are named by their place in the table.
class StorePrinter
{
public:
    static std::string print(const TavDataStore &store);
};
