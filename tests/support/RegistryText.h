#pragma once

#include "store/TavDataStore.h"

#include <string>

// What a store shows of its registry at this moment, as text: equal for two stores that agree,
// whatever each has been through.
class RegistryText
{
public:
    static std::string planes(const TavDataStore &store); // who is whose child, under which name
    static std::string whole(const TavDataStore &store);  // and all facts of every entry
};
