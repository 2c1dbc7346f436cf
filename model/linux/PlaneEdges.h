#pragma once

#include "model/linux/AcyclicEdges.h"
#include "model/linux/ObjectTable.h"

#include <array>

// Who is whose child in each plane, from the parents' side: sorted, none twice, without cycles,
// and with every member below the host. Empty for a plane without members. What had to be left
// out to keep a plane without cycles is noted in the child's refused parents.
std::array<std::vector<Edge>, planeCount> planeEdges(ObjectTable &objects);
