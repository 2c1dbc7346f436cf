// SPDX-License-Identifier: Apache-2.0
#include "display/comparison/TextDifference.h"
#include "tests/support/QtPrinters.h"

#include <QRandomGenerator>
#include <gtest/gtest.h>

namespace {
using namespace Qt::Literals::StringLiterals;
using Side = TextDifference::Side;
using Kind = TextDifference::Part::Kind;

// With changed parts in brackets.
std::string marked(const TextDifference::Parts &parts)
{
    QString text;
    for (const auto &part : parts)
        text += part.kind == Kind::Changed ? u'[' + part.text + u']' : part.text;
    return text.toStdString();
}

QString without(Kind kind, const TextDifference::Parts &parts)
{
    QString text;
    for (const auto &part : parts)
        text += part.kind == kind ? QString() : part.text;
    return text;
}
} // namespace

TEST(TextDifference, MarksWholeWords)
{
    const struct
    {
        QString before;
        QString after;
        const char *markedBefore;
        const char *markedAfter;
    } cases[] = {
        {u"mtu 1500 up"_s, u"mtu 9000 up"_s, "mtu [1500] up", "mtu [9000] up"},
        {u"same"_s, u"same"_s, "same", "same"},
        {u""_s, u"all new"_s, "", "[all new]"},
        {u"0x1af4"_s, u"0x1af5"_s, "[0x1af4]", "[0x1af5]"},
        {u"a b c d"_s, u"a x c"_s, "a [b] c[ d]", "a [x] c"},
        {u"aa"_s, u"aaa"_s, "[aa]", "[aaa]"},
        {u"on 😀!"_s, u"on 😁!"_s, "on [😀]!", "on [😁]!"},
        {u"e\u0301 x"_s, u"e\u0300 x"_s, "[e\u0301] x", "[e\u0300] x"},
    };
    for (const auto &row : cases) {
        const TextDifference difference(row.before, row.after);
        EXPECT_EQ(marked(difference.parts(Side::Before)), row.markedBefore);
        EXPECT_EQ(marked(difference.parts(Side::After)), row.markedAfter);
    }
}

TEST(TextDifference, WhatIsNotMarkedIsTheSameInBoth)
{
    QRandomGenerator random(1);
    const QString letters = u"ab 0/,😀"_s;
    const auto text = [&](quint32 maxLength) {
        QString made;
        for (quint32 left = random.bounded(maxLength); left > 0; --left)
            made += letters[random.bounded(static_cast<quint32>(letters.size()))];
        return made;
    };
    for (int round = 0; round < 2000; ++round) {
        const quint32 length = round % 50 == 0 ? 10'000 : 40;
        const QString end = text(20);
        const QString before = text(length) + end;
        const QString after = round % 2 ? text(length) + end : before + text(9);
        const TextDifference difference(before, after);
        const auto older = difference.parts(Side::Before);
        const auto newer = difference.parts(Side::After);
        ASSERT_EQ(without(Kind::LeftOut, older), before);
        ASSERT_EQ(without(Kind::LeftOut, newer), after);
        ASSERT_EQ(without(Kind::Changed, older), without(Kind::Changed, newer));
        const QString excerpt = without(Kind::LeftOut, difference.excerpt(Side::After, 100));
        ASSERT_LE(excerpt.size(), 100 + 24);
    }
}

TEST(TextDifference, AnExcerptHasWhatChanged)
{
    const QString many = u"word "_s.repeated(10'000);
    const TextDifference difference(many + u"old "_s + many, many + u"new "_s + many);
    EXPECT_EQ(marked(difference.excerpt(Side::Before, 100)),
              "…ord word word word word [old] word word word word wor…");
    EXPECT_EQ(marked(difference.excerpt(Side::After, 10)), "…ord word w…");
    const TextDifference added({}, many);
    EXPECT_EQ(marked(added.excerpt(Side::After, 12)), "[word word wo]…");
}
