#include "model/linux/AcyclicEdges.h"

#include <algorithm>
#include <cstddef>
#include <utility>

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

// Looks for a way from both its ends by turns, for one of them often goes no further at once.
class GrowingGraph
{
public:
    explicit GrowingGraph(int vertexCount)
        : down_(vertexCount)
        , up_(vertexCount)
    {}

    bool addUnlessCyclic(const Edge &edge)
    {
        const auto &[parent, child] = edge;
        if (reaches(child, parent))
            return false;
        down_.next.of(parent).push_back(child);
        up_.next.of(child).push_back(parent);
        return true;
    }

private:
    struct Side
    {
        explicit Side(int vertexCount)
            : next(vertexCount)
            , visit(static_cast<std::size_t>(vertexCount))
        {}
        int &visitOf(int vertex) { return visit[static_cast<std::size_t>(vertex)]; }

        Neighbours next;
        std::vector<int> visit; // by vertex, the last that came by
        std::vector<int> pending = {};
    };

    bool reaches(int from, int to)
    {
        ++visits_;
        begin(down_, from);
        begin(up_, to);
        if (from == to)
            return true;
        while (!down_.pending.empty() && !up_.pending.empty()) {
            if (meets(down_, up_) || meets(up_, down_))
                return true;
        }
        return false;
    }

    void begin(Side &side, int vertex) const
    {
        side.pending = {vertex};
        side.visitOf(vertex) = visits_;
    }

    // Goes on from one vertex.
    bool meets(Side &side, Side &other) const
    {
        const int vertex = side.pending.back();
        side.pending.pop_back();
        for (const int neighbour : side.next.of(vertex)) {
            if (other.visitOf(neighbour) == visits_)
                return true;
            if (std::exchange(side.visitOf(neighbour), visits_) != visits_)
                side.pending.push_back(neighbour);
        }
        return false;
    }

    Side down_;
    Side up_;
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
