#pragma once

#include "model/linux/SweepObject.h"

#include <vector>

// All that the reader threads found, each object once, in no particular order.
struct Sweep
{
    std::vector<SweepObject> objects;
    std::vector<SweepObject::Unread> unread; // of the tree's own folders, such as "bus"
    std::vector<QByteArray> filesRead;       // when asked for
};
