// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/linux/RawObject.h"

#include <vector>

// Everything that the reader threads found, each object once, in no particular order.
struct TreeContents
{
    std::vector<RawObject> objects;
    std::vector<RawObject::Unread> unread; // among the tree's own folders, such as "bus"
    std::vector<SysfsPath> filesRead;      // on request
};
