// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/linux/AcyclicEdges.h"
#include "model/linux/ObjectTable.h"

#include <array>

// The edges of each plane from parent to child: sorted, unique, without cycles, and with every
// member below the host. Empty for a plane without members. Edges left out to avoid cycles are
// noted in the child's refused parents.
std::array<std::vector<Edge>, planeCount> planeEdges(ObjectTable &objects);
