// SPDX-License-Identifier: Apache-2.0
#include "model/linux/AcyclicEdges.h"

#include <QElapsedTimer>
#include <algorithm>
#include <gtest/gtest.h>
#include <random>

namespace {
using Edges = std::vector<Edge>;

bool reaches(const Edges &edges, int from, int to)
{
    return from == to || std::any_of(edges.begin(), edges.end(), [&](const Edge &edge) {
               return edge.first == from && reaches(edges, edge.second, to);
           });
}

// The definition: adds edges one by one, and searches a cycle for each.
Edges refusedOneByOne(const Edges &edges)
{
    Edges kept;
    Edges refused;
    for (const Edge &edge : edges)
        (reaches(kept, edge.second, edge.first) ? refused : kept).push_back(edge);
    return refused;
}
} // namespace

TEST(AcyclicEdges, AreThoseThatCloseNoCycleInTheirOrder)
{
    std::mt19937 random(1);
    for (int round = 0; round < 300; ++round) {
        const int count = 2 + static_cast<int>(random() % 20);
        Edges edges;
        for (unsigned i = random() % 60; i > 0; --i)
            edges.push_back({static_cast<int>(random() % static_cast<unsigned>(count)),
                             static_cast<int>(random() % static_cast<unsigned>(count))});
        std::sort(edges.begin(), edges.end());
        edges.erase(std::unique(edges.begin(), edges.end()), edges.end());
        const Edges expected = refusedOneByOne(edges);
        Edges kept = edges;
        const RefusedEdges refused = takeOutCycles(kept, count);
        EXPECT_EQ(refused.closing, expected);
        EXPECT_TRUE(refused.unchecked.empty());
        EXPECT_EQ(kept.size() + expected.size(), edges.size());
        EXPECT_TRUE(refusedOneByOne(kept).empty());
    }
}

// A quadratic algorithm would take minutes.
TEST(AcyclicEdges, OfLongRingsAreFoundSoon)
{
    constexpr int count = 300'000;
    for (const int step : {1, count - 1}) {
        Edges edges;
        edges.reserve(count);
        for (int i = 0; i < count; ++i)
            edges.push_back({i, (i + step) % count});
        QElapsedTimer time;
        time.start();
        EXPECT_EQ(takeOutCycles(edges, count).closing.size(), 1U);
        EXPECT_LT(time.elapsed(), 10'000);
    }
}

// Two long chains joined to one cycle, and links from below the one to above the other: each needs
// a search through both chains.
TEST(AcyclicEdges, ThatDefeatTheSearchAreRefusedUncheckedInTheEnd)
{
    constexpr int length = 20'000;
    Edges edges;
    for (int i = 0; i < length; ++i) {
        if (i + 1 < length) {
            edges.push_back({i, i + 1});
            edges.push_back({length + i, length + i + 1});
        }
        edges.push_back({length - 1, 3 * length + i});
        edges.push_back({2 * length + i, length});
        edges.push_back({3 * length + i, 2 * length + i});
    }
    edges.push_back({2 * length - 1, 0});
    std::sort(edges.begin(), edges.end());
    constexpr int count = 4 * length;
    Edges kept = edges;
    const RefusedEdges refused = takeOutCycles(kept, count);
    EXPECT_FALSE(refused.closing.empty());
    EXPECT_FALSE(refused.unchecked.empty());
    EXPECT_LE(refused.steps, maxCycleSteps(edges.size()) + edges.size());
    EXPECT_EQ(refused.closing.size() + refused.unchecked.size(), std::size_t(length));
    EXPECT_EQ(kept.size() + std::size_t(length), edges.size());
    EXPECT_EQ(takeOutCycles(kept, count).steps, 0U) << "for no cycle is left";
}
