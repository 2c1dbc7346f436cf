#pragma once

#include <utility>
#include <vector>

// An edge leads from a parent to a child; both are indices below a given count.
using Edge = std::pair<int, int>;

// Takes out of the edges those that would close a cycle if all were added one by one in their
// order, and returns them. Linear where there is no cycle.
std::vector<Edge> takeOutCycles(std::vector<Edge> &edges, int vertexCount);
