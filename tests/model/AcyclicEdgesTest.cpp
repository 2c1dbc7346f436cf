#include "model/linux/AcyclicEdges.h"

#include <QElapsedTimer>
#include <algorithm>
#include <gtest/gtest.h>
#include <random>

namespace {
using Edges = std::vector<Edge>;

// Word for word: one by one, each looked at from all that is there.
Edges refusedOneByOne(const Edges &edges, int count)
{
    std::vector<std::vector<bool>> reaches(static_cast<std::size_t>(count),
                                           std::vector<bool>(static_cast<std::size_t>(count)));
    Edges refused;
    for (const auto &[parent, child] : edges) {
        const auto from = static_cast<std::size_t>(parent);
        const auto to = static_cast<std::size_t>(child);
        if (from == to || reaches[to][from]) {
            refused.push_back({parent, child});
            continue;
        }
        for (std::size_t above = 0; above < reaches.size(); ++above) {
            if (above != from && !reaches[above][from])
                continue;
            reaches[above][to] = true;
            for (std::size_t below = 0; below < reaches.size(); ++below)
                reaches[above][below] = reaches[above][below] || reaches[to][below];
        }
    }
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
        const Edges expected = refusedOneByOne(edges, count);
        Edges kept = edges;
        EXPECT_EQ(takeOutCycles(kept, count), expected);
        EXPECT_EQ(kept.size() + expected.size(), edges.size());
        EXPECT_TRUE(refusedOneByOne(kept, count).empty());
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
