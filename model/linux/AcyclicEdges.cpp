#include "model/linux/AcyclicEdges.h"

#include <algorithm>
#include <cstddef>

namespace {
// Adjacency lists of the edges, by parent or by child.
class Neighbours
{
public:
    explicit Neighbours(int vertexCount)
        : of_(static_cast<std::size_t>(vertexCount))
    {}
    std::vector<int> &of(int vertex) { return of_[static_cast<std::size_t>(vertex)]; }

private:
    std::vector<std::vector<int>> of_;
};

// Marks the vertices left when those without a neighbour left are taken away again and again.
std::vector<bool> core(const std::vector<Edge> &edges, int vertexCount, bool byParent)
{
    Neighbours next(vertexCount);
    std::vector<int> degree(static_cast<std::size_t>(vertexCount));
    for (const auto &[parent, child] : edges) {
        next.of(byParent ? parent : child).push_back(byParent ? child : parent);
        ++degree[static_cast<std::size_t>(byParent ? child : parent)];
    }
    std::vector<bool> isLeft(static_cast<std::size_t>(vertexCount), true);
    std::vector<int> free;
    for (int vertex = 0; vertex < vertexCount; ++vertex) {
        if (degree[static_cast<std::size_t>(vertex)] == 0)
            free.push_back(vertex);
    }
    while (!free.empty()) {
        const int vertex = free.back();
        free.pop_back();
        isLeft[static_cast<std::size_t>(vertex)] = false;
        for (const int neighbour : next.of(vertex)) {
            if (--degree[static_cast<std::size_t>(neighbour)] == 0)
                free.push_back(neighbour);
        }
    }
    return isLeft;
}

class GrowingGraph
{
public:
    explicit GrowingGraph(int vertexCount)
        : children_(vertexCount)
        , visit_(static_cast<std::size_t>(vertexCount))
    {}

    bool addUnlessCyclic(const Edge &edge)
    {
        if (reaches(edge.second, edge.first))
            return false;
        children_.of(edge.first).push_back(edge.second);
        return true;
    }

private:
    bool reaches(int from, int to)
    {
        ++visits_;
        std::vector<int> pending{from};
        while (!pending.empty()) {
            const int vertex = pending.back();
            pending.pop_back();
            if (vertex == to)
                return true;
            int &visited = visit_[static_cast<std::size_t>(vertex)];
            if (visited == visits_)
                continue;
            visited = visits_;
            const auto &children = children_.of(vertex);
            pending.insert(pending.end(), children.begin(), children.end());
        }
        return false;
    }

    Neighbours children_;
    std::vector<int> visit_;
    int visits_ = 0;
};
} // namespace

std::vector<Edge> takeOutCycles(std::vector<Edge> &edges, int vertexCount)
{
    // Only what lies between two vertices of a cycle can be on one: what is left from both sides.
    const std::vector<bool> fromTop = core(edges, vertexCount, true);
    if (std::find(fromTop.begin(), fromTop.end(), true) == fromTop.end())
        return {};
    const std::vector<bool> fromBottom = core(edges, vertexCount, false);
    const auto isInCore = [&](int vertex) {
        const auto index = static_cast<std::size_t>(vertex);
        return fromTop[index] && fromBottom[index];
    };
    GrowingGraph graph(vertexCount);
    std::vector<Edge> refused;
    std::erase_if(edges, [&](const Edge &edge) {
        if (!isInCore(edge.first) || !isInCore(edge.second) || graph.addUnlessCyclic(edge))
            return false;
        refused.push_back(edge);
        return true;
    });
    return refused;
}
