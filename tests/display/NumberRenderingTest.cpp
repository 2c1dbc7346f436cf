#include "DisplayFixture.h"
#include "tests/support/QtPrinters.h"

#include <gtest/gtest.h>

namespace {
struct NumberRow
{
    const char *name;
    int width;
    quint64 bits;
    PropertyFormatOptions options;
    const char *text;
};

class NumberRenderingTest : public testing::TestWithParam<NumberRow>
{};

TEST_P(NumberRenderingTest, Renders)
{
    const NumberRow &row = GetParam();
    // What the snapshot's machine was plays no part for a number.
    for (const auto order : {EntryStore::ByteOrderUnknown, EntryStore::BigEndian}) {
        const LoneItem item(RegistryValue::number(row.bits, row.width), order);
        const StyledText text = item->formatNumberWithOptions(row.options);
        EXPECT_EQ(text.text(), QString::fromLatin1(row.text));
        EXPECT_EQ(text.attributes(), TextAttributes());
        EXPECT_TRUE(text.overrides().empty());
    }
}

constexpr quint64 minusOne = ~Q_UINT64_C(0);

INSTANTIATE_TEST_SUITE_P(
    Rows, NumberRenderingTest,
    testing::Values(
        NumberRow{"AutomaticByteMinusOne", 1, minusOne, {.unit = -1}, "0xff"},
        NumberRow{"AutomaticShort", 2, 0x1234, {.unit = -1}, "0x1234"},
        NumberRow{"AutomaticWordZero", 4, 0, {.unit = -1}, "0x0"},
        NumberRow{"AutomaticLong", 8, minusOne, {.unit = -1}, "0xffffffffffffffff"},
        NumberRow{"HexadecimalIsNotPadded", 4, 42, formatOf("4xhu"), "0x2a"},
        NumberRow{"UnitIsTheNumbersOwn", 4, 0x12345678, formatOf("1xhu"), "0x12345678"},
        NumberRow{"UnitIsTheNumbersOwnWide", 1, 0xff, formatOf("8xhu"), "0xff"},
        NumberRow{"Octal", 2, 511, formatOf("2ohu"), "0o777"},
        NumberRow{"OctalLong", 8, minusOne, formatOf("8ohu"), "0o1777777777777777777777"},
        NumberRow{"Unsigned", 4, minusOne, formatOf("4dhu"), "4294967295"},
        NumberRow{"Signed", 4, minusOne, formatOf("4dhs"), "-1"},
        NumberRow{"SignedLong", 8, Q_UINT64_C(1) << 63, formatOf("8dhs"), "-9223372036854775808"},
        NumberRow{"UnsignedLong", 8, minusOne, formatOf("8dhu"), "18446744073709551615"},
        // Units are read unsigned, and only the two wide formats turn that into a sign.
        NumberRow{"SignedByte", 1, minusOne, formatOf("1dhs"), "255"},
        NumberRow{"SignedShort", 2, minusOne, formatOf("2dhs"), "65535"},
        NumberRow{"OtherSignednessIsUnsigned",
                  4,
                  minusOne,
                  {.unit = 4, .base = 10, .signedness = 2},
                  "4294967295"},
        NumberRow{"Binary", 4, 5, formatOf("4bhu"), "0b101"},
        NumberRow{"BinaryZero", 8, 0, formatOf("8bhu"), "0b0"},
        NumberRow{"BinaryTopBit", 1, 0x80, formatOf("1bhu"), "0b10000000"},
        NumberRow{"BigEndianIsSwapped", 4, 1, formatOf("4xbu"), "0x1000000"},
        NumberRow{"LittleEndianIsAsStored", 4, 1, formatOf("4xlu"), "0x1"},
        NumberRow{"ByteHasNoOrder", 1, 1, formatOf("1xbu"), "0x1"},
        NumberRow{"ImpossibleOrderReadsZero", 4, 7, {.unit = 4, .base = 16, .byteOrder = 3}, "0x0"},
        NumberRow{"CharactersNative", 4, 0x41424344, formatOf("s1h"), "DCBA"},
        NumberRow{"CharactersBigEndian", 4, 0x41424344, formatOf("s1b"), "ABCD"},
        NumberRow{"CharactersEndAtZero", 8, 0x4100424344, formatOf("s1l"), "DCB"},
        NumberRow{"CharactersOfZero", 2, 0, formatOf("s1h"), ""},
        NumberRow{"CharactersNotAscii", 2, 0xe4, formatOf("s1h"), "(internal error!)"},
        NumberRow{"CharactersAreAsciiInAnyEncoding", 1, 0xe4, formatOf("s5h"), "(internal error!)"},
        NumberRow{"CharactersUnknownOrder", 4, 65, {.unit = 0, .byteOrder = 3}, "????"},
        NumberRow{"CharacterUnknownOrder", 1, 65, {.unit = 0, .byteOrder = 3}, "A"},
        NumberRow{"ImpossibleBase", 4, 1, {.unit = 4, .base = 7}, "(internal error!)"},
        NumberRow{"UnreadableDescriptor", 4, 1, formatOf("4xh"), "(internal error!)"},
        NumberRow{"UseDefaultIsNoRendering", 4, 1, {.unit = -2}, ""}),
    [](const auto &row) { return std::string(row.param.name); });
} // namespace
