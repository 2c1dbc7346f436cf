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

// Word for word: one by one, each looked at from all that is there.
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
        EXPECT_EQ(takeOutCycles(kept, count), expected);
        EXPECT_EQ(kept.size() + expected.size(), edges.size());
        EXPECT_TRUE(refusedOneByOne(kept).empty());
    }
}

// One that took the square of their number would take minutes.
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
        EXPECT_EQ(takeOutCycles(edges, count).size(), 1U);
        EXPECT_LT(time.elapsed(), 10'000);
    }
}
