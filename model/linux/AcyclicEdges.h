#pragma once

#include <cstddef>
#include <utility>
#include <vector>

// An edge leads from a parent to a child; both are indices below a given count.
using Edge = std::pair<int, int>;

struct RefusedEdges
{
    std::vector<Edge> closing;   // would close a cycle
    std::vector<Edge> unchecked; // might: the search has ended before them
    std::size_t steps = 0;       // that the search took
};

// A search of cycles takes at most about this many steps.
std::size_t mostCycleSteps(std::size_t edgeCount);

// Takes out of the edges those that would close a cycle if all were added one by one in their
// order. Where that takes too many steps, the rest keeps only those that agree with one order of
// the vertices. Linear where there is no cycle.
RefusedEdges takeOutCycles(std::vector<Edge> &edges, int vertexCount);
