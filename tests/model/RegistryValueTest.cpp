// SPDX-License-Identifier: Apache-2.0
#include "tests/support/QtPrinters.h"
#include "tests/support/RegistryValues.h"

#include <gtest/gtest.h>

using namespace values;

TEST(RegistryValue, NumbersKeepTheirWidthBitsAndSign)
{
    const RegistryValue byte = number(0x1ff, 1);
    EXPECT_EQ(byte.numberBits(), 0xffU);
    EXPECT_EQ(byte.signedNumber(), -1);
    EXPECT_EQ(negative(-2, 2).numberBits(), 0xfffeU);
    EXPECT_NE(number(5, 4), number(5, 8));
}

TEST(RegistryValue, AnswersNothingForAnotherType)
{
    const RegistryValue word = text("word");
    EXPECT_EQ(word.numberBits(), 0U);
    EXPECT_EQ(word.signedNumber(), 0);
    EXPECT_EQ(word.count(), 0);
    EXPECT_TRUE(word.toData().isNull() && word.toDate().isNull());
    EXPECT_TRUE(word.members().empty() && word.elements().empty());
    EXPECT_TRUE(word.member(u"word").isNone());
    EXPECT_TRUE(number(3).toString().isNull());
    EXPECT_FALSE(number(1).toBoolean());
}

TEST(RegistryValue, SharesWhatItHoldsAndOutlivesItsSource)
{
    RegistryValue inner;
    {
        const RegistryValue outer =
            dictionary({{"list", array({text("a"), data("0102")})}, {"n", number(1)}});
        EXPECT_EQ(outer.descendantCount(), 4U);
        inner = outer.member(u"list");
        RegistryValue moved = std::move(inner);
        EXPECT_TRUE(inner.isNone()); // NOLINT(bugprone-use-after-move): none is what is left
        inner = moved;
        inner = RegistryValue(inner); // onto itself, through a copy
    }
    ASSERT_EQ(inner.count(), 2);
    EXPECT_EQ(inner.elements()[0].toString(), QStringLiteral("a"));
    EXPECT_EQ(inner.elements()[1].toData().toHex(), QByteArray("0102"));
}

TEST(RegistryValue, EqualValuesHashAlike)
{
    const auto make = [] {
        return RegistryValue::Elements{
            text("text"),
            text(""),
            number(7, 8),
            RegistryValue::boolean(true),
            data("00ff"),
            RegistryValue::null(),
            RegistryValue::date(QDateTime::fromMSecsSinceEpoch(1'700'000'000'123, Qt::UTC)),
            array({number(1)}),
            set({text("m")}),
            dictionary({{"k", array({})}})};
    };
    const auto once = make();
    const auto again = make();
    for (std::size_t i = 0; i < once.size(); ++i) {
        for (std::size_t j = 0; j < again.size(); ++j)
            EXPECT_EQ(once[i] == again[j], i == j) << i << ' ' << j;
        EXPECT_EQ(qHash(once[i]), qHash(again[i])) << i;
    }
    EXPECT_NE(array({number(1)}), set({number(1)}));
}
