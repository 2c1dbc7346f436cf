#pragma once

#include "model/linux/RawObject.h"

#include <vector>

// All that the reader threads found, each object once, in no particular order.
struct TreeContents
{
    std::vector<RawObject> objects;
    std::vector<RawObject::Unread> unread; // of the tree's own folders, such as "bus"
    std::vector<SysfsPath> filesRead;      // when asked for
};
