// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <utility>
#include <vector>

// An edge leads from a parent to a child; both are indices below a given count.
using Edge = std::pair<int, int>;

struct RefusedEdges
{
    std::vector<Edge> closing;   // would close a cycle
    std::vector<Edge> unchecked; // might; the search ended before them
    std::size_t steps = 0;       // taken by the search
};

// The approximate limit of a search for cycles.
std::size_t maxCycleSteps(std::size_t edgeCount);

// Removes edges that would close a cycle if all were added one by one in order. When the limit of
// steps is reached, keeps only those of the rest that agree with one order of the vertices. Linear
// without cycles.
RefusedEdges takeOutCycles(std::vector<Edge> &edges, int vertexCount);
