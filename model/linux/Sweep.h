#pragma once

#include "model/linux/SweepObject.h"

#include <vector>

// All that the reader threads found, each object once, in no particular order.
struct Sweep
{
    std::vector<SweepObject> objects;
    std::vector<QByteArray> filesRead; // when asked for
};
