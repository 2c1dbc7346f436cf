// SPDX-License-Identifier: Apache-2.0
#include "model/linux/AcyclicEdges.h"

#include <algorithm>
#include <optional>
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

// Marks the vertices that remain when those without a remaining neighbour are removed repeatedly.
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

// Searches a path from both ends alternately: one of the searches often ends early.
class GrowingGraph
{
public:
    GrowingGraph(int vertexCount, std::size_t maxSteps)
        : vertexCount_(vertexCount)
        , maxSteps_(maxSteps)
        , down_(vertexCount)
        , up_(vertexCount)
    {}

    std::size_t steps() const { return steps_; }

    // Whether the edge was added: it is unless it closes a cycle; none when out of steps.
    std::optional<bool> addUnlessCyclic(const Edge &edge)
    {
        const auto &[parent, child] = edge;
        if (reaches(child, parent))
            return false;
        if (steps_ >= maxSteps_)
            return std::nullopt;
        down_.next.of(parent).push_back(child);
        up_.next.of(child).push_back(parent);
        return true;
    }

    // The positions of the vertices in a topological order.
    std::vector<int> places()
    {
        std::vector<int> places(static_cast<std::size_t>(vertexCount_));
        std::vector<std::size_t> parentsLeft;
        std::vector<int> free;
        for (int vertex = 0; vertex < vertexCount_; ++vertex) {
            parentsLeft.push_back(up_.next.of(vertex).size());
            if (parentsLeft.back() == 0)
                free.push_back(vertex);
        }
        for (int place = 0; !free.empty(); ++place) {
            const int vertex = free.back();
            free.pop_back();
            places[static_cast<std::size_t>(vertex)] = place;
            for (const int child : down_.next.of(vertex)) {
                if (--parentsLeft[static_cast<std::size_t>(child)] == 0)
                    free.push_back(child);
            }
        }
        return places;
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
        std::vector<int> visit; // by vertex, the last search that visited it
        std::vector<int> pending = {};
    };

    // Also false when out of steps.
    bool reaches(int from, int to)
    {
        ++visits_;
        begin(down_, from);
        begin(up_, to);
        if (from == to)
            return true;
        while (!down_.pending.empty() && !up_.pending.empty() && steps_ < maxSteps_) {
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

    // Expands one vertex.
    bool meets(Side &side, Side &other)
    {
        const int vertex = side.pending.back();
        side.pending.pop_back();
        steps_ += 1 + side.next.of(vertex).size();
        for (const int neighbour : side.next.of(vertex)) {
            if (other.visitOf(neighbour) == visits_)
                return true;
            if (std::exchange(side.visitOf(neighbour), visits_) != visits_)
                side.pending.push_back(neighbour);
        }
        return false;
    }

    int vertexCount_;
    std::size_t maxSteps_;
    std::size_t steps_ = 0;
    Side down_;
    Side up_;
    int visits_ = 0;
};

// Decides edge by edge.
class EdgeJudge
{
public:
    EdgeJudge(int vertexCount, std::size_t maxSteps)
        : graph_(vertexCount, maxSteps)
    {}

    bool refuses(const Edge &edge)
    {
        const auto isAdded = places_.empty() ? graph_.addUnlessCyclic(edge) : std::nullopt;
        if (!isAdded)
            return refusesUnchecked(edge);
        if (!*isAdded)
            refused_.closing.push_back(edge);
        return !*isAdded;
    }
    RefusedEdges take()
    {
        refused_.steps = graph_.steps();
        return std::move(refused_);
    }

private:
    // Edges that follow one topological order close no cycle together.
    bool refusesUnchecked(const Edge &edge)
    {
        if (places_.empty())
            places_ = graph_.places();
        const auto placeOf = [&](int vertex) { return places_[static_cast<std::size_t>(vertex)]; };
        const bool leadsOn = placeOf(edge.first) < placeOf(edge.second);
        if (!leadsOn)
            refused_.unchecked.push_back(edge);
        return !leadsOn;
    }

    GrowingGraph graph_;
    std::vector<int> places_; // when out of steps
    RefusedEdges refused_;
};
} // namespace

std::size_t maxCycleSteps(std::size_t edgeCount)
{
    // Enough to find all cycles among a thousand edges.
    constexpr std::size_t always = 2'000'000;
    constexpr std::size_t forEachEdge = 64;
    return always + forEachEdge * edgeCount;
}

RefusedEdges takeOutCycles(std::vector<Edge> &edges, int vertexCount)
{
    // Only vertices that remain from both directions can be on a cycle.
    const std::vector<bool> fromTop = core(edges, vertexCount, true);
    if (std::find(fromTop.begin(), fromTop.end(), true) == fromTop.end())
        return {};
    const std::vector<bool> fromBottom = core(edges, vertexCount, false);
    const auto isInCore = [&](int vertex) {
        const auto index = static_cast<std::size_t>(vertex);
        return fromTop[index] && fromBottom[index];
    };
    EdgeJudge judge(vertexCount, maxCycleSteps(edges.size()));
    std::erase_if(edges, [&](const Edge &edge) {
        return isInCore(edge.first) && isInCore(edge.second) && judge.refuses(edge);
    });
    return judge.take();
}
