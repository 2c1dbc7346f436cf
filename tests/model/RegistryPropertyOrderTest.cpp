// SPDX-License-Identifier: Apache-2.0
#include "tests/support/RegistryValues.h"

#include <gtest/gtest.h>

using namespace values;

namespace {
struct Row
{
    const char *what;
    RegistryValue receiver;
    RegistryValue other;
    int byType;
    int byValue;
};

const RegistryValue yes = RegistryValue::boolean(true);
const RegistryValue no = RegistryValue::boolean(false);
const RegistryValue date = RegistryValue::date(QDateTime::fromMSecsSinceEpoch(1, Qt::UTC));
const RegistryValue later = RegistryValue::date(QDateTime::fromMSecsSinceEpoch(2, Qt::UTC));
const quint64 largest = ~quint64(0);
} // namespace

TEST(RegistryPropertyOrder, ByTypeAndByValue)
{
    const Row rows[] = {
        {"false before true", no, yes, 0, -1},
        {"true after false", yes, no, 0, 1},
        {"equal truths", yes, yes, 0, 0},
        {"numbers of any width", number(7, 1), number(7, 8), 0, 0},
        {"greater number", number(300, 2), number(2, 8), 0, 1},
        {"negative before positive", negative(-1), number(0), 0, -1},
        {"two negatives", negative(-1, 8), negative(-2, 1), 0, 1},
        {"unsigned beyond the signed", number(largest, 8), number(1), 0, 1},
        {"strings without case", text("Abc"), text("aBC"), 0, 0},
        {"strings", text("a"), text("B"), 0, -1},
        {"shorter data", data("ff"), data("0000"), 0, -1},
        {"longer data", data("0000"), data("ff"), 0, 1},
        {"no data", data(""), data(""), 0, 0},
        {"the last differing byte decides, the greater first", data("0102"), data("0201"), 0, -1},
        {"the last differing byte, smaller", data("0201"), data("0102"), 0, 1},
        {"bytes are unsigned", data("80"), data("01"), 0, -1},
        {"a difference before equal bytes", data("0103"), data("0203"), 0, 1},
        {"number against a lower type", number(1), yes, 1, -1},
        {"number against a higher type", number(1), text("1"), -1, -1},
        {"string against number", text("1"), number(1), 1, 1},
        {"data against string", data("00"), text(""), -1, -1},
        {"string against data", text(""), data("00"), 1, 1},
        {"boolean against number", yes, number(0), -1, -1},
        {"dictionary against array counts as array", dictionary({}), array({}), 0, 0},
        {"array against dictionary", array({}), dictionary({}), -1, -1},
        {"dictionary against dictionary", dictionary({}), dictionary({}), -1, -1},
        {"set against array, by count", set({text("a"), text("b")}), array({no}), 0, 1},
        {"arrays by count", array({no}), array({no, no}), 0, -1},
        {"array against string", array({}), text(""), 1, 1},
        {"string against set", text("x"), set({}), -1, -1},
        {"unranked receiver", date, later, 0, 0},
        {"unranked receiver against a number", date, number(1), 0, 0},
        {"against an unranked type", text("x"), date, -1, -1},
        {"array against an unranked type", array({}), RegistryValue::null(), -1, -1},
    };
    for (const Row &row : rows) {
        const auto receiver = build(row.receiver);
        const auto other = build(row.other);
        EXPECT_EQ(receiver->compareByType(*other), row.byType) << row.what;
        EXPECT_EQ(receiver->compareByValue(*other), row.byValue) << row.what;
    }
}

TEST(RegistryPropertyOrder, ByNameFollowsTheParentsType)
{
    const auto table = build(dictionary({{"beta", number(1)}, {"Alpha", number(2)}, {"BETA", no}}));
    EXPECT_EQ(table->childAtIndex(0)->compareByName(*table->childAtIndex(1)), 1);
    EXPECT_EQ(table->childAtIndex(1)->compareByName(*table->childAtIndex(0)), -1);
    EXPECT_EQ(table->childAtIndex(0)->compareByName(*table->childAtIndex(2)), 0);
    const auto list = build(array({number(2), number(1)}));
    EXPECT_EQ(list->childAtIndex(0)->compareByName(*list->childAtIndex(1)), 0);
    const auto members = build(set({number(2), number(1)}));
    EXPECT_EQ(members->childAtIndex(0)->compareByName(*members->childAtIndex(1)), 1);
    EXPECT_EQ(table->compareByName(*list), 0);
}
