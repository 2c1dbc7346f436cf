// SPDX-License-Identifier: Apache-2.0
#include "DisplayFixture.h"
#include "tests/support/QtPrinters.h"

#include "display/ValueStyles.h"

#include <gtest/gtest.h>

namespace {
constexpr qint32 littleEndian = EntryStore::LittleEndian;
constexpr qint32 bigEndian = EntryStore::BigEndian;
constexpr qint32 unknownOrder = EntryStore::ByteOrderUnknown;
constexpr auto unable = u"< – Unable to convert data using selected encoding – >";

TEST(DataIntegersTest, Renders)
{
    const struct
    {
        const char *name;
        const char *hex; // of the bytes
        PropertyFormatOptions options;
        const char16_t *text;
        qint32 machine = littleEndian;
    } rows[] = {
        {"Empty", "", formatOf("4xhu"), u"<>"},
        {"Leftover", "010203040506", formatOf("4xbu"), u"<0x01020304 …>"},
        {"OnlyLeftover", "010203", formatOf("4xbu"), u"<…>"},
        {"LittleEndian", "01020304", formatOf("2xlu"), u"<0x0201 0x0403>", bigEndian},
        {"NativeLittle", "01020304", formatOf("2xhu"), u"<0x0201 0x0403>"},
        {"NativeBig", "01020304", formatOf("2xhu"), u"<0x0102 0x0304>", bigEndian},
        {"NativeUnknown", "0102030405", formatOf("2xhu"), u"<???? ???? …>", unknownOrder},
        {"NativeUnknownLong", "0102030405060708", formatOf("8dhu"), u"<???????????????\?>",
         unknownOrder},
        {"NativeUnknownBinary", "0102", formatOf("2bhu"), u"<0b???????????????\?>", unknownOrder},
        {"BytesHaveNoOrder", "0102", formatOf("1xhu"), u"<0x01 0x02>", unknownOrder},
        {"ImpossibleOrderReadsZero", "0102", {.unit = 2, .base = 16, .byteOrder = 3}, u"<0x0000>"},
        {"HexadecimalLong", "0000000000000001", formatOf("8xbu"), u"<0x0000000000000001>"},
        {"OctalByte", "01ff", formatOf("1ohu"), u"<0o001 0o377>"},
        {"OctalShort", "0001", formatOf("2obu"), u"<0o000001>"},
        {"OctalWord", "00000001", formatOf("4obu"), u"<0o000000000001>"},
        {"OctalLong", "0000000000000001", formatOf("8obu"), u"<0o000000000000000001>"},
        {"DecimalIsNotPadded", "0001", formatOf("2dbu"), u"<1>"},
        {"SignedWords", "fffffffe00000001", formatOf("4dbs"), u"<-2 1>"},
        {"BinaryKeepsEveryBit", "05", formatOf("1bhu"), u"<0b00000101>"},
        {"ImpossibleBase", "0102", {.unit = 1, .base = 7}, u"<…>"},
        {"ImpossibleUnit", "010203", {.unit = 3, .base = 2}, u"<…>"},
        {"UnreadableDescriptor", "0102", formatOf("x"), u"<…>"},
        {"UnreadableDescriptorNoBytes", "", formatOf("x"), u"<>"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        const LoneItem item(RegistryValue::data(QByteArray::fromHex(row.hex)), row.machine);
        const StyledText text = item->formatDataValueWithOptions(row.options);
        EXPECT_EQ(text.text(), QString::fromUtf16(row.text));
        EXPECT_EQ(text.attributes(), ValueStyles::fixedPitch);
        EXPECT_EQ(item->leftoverBytesInDataValue(), text.text().contains(u'…'));
    }
}

TEST(DataCharactersTest, Renders)
{
    const struct
    {
        const char *name;
        QByteArray bytes;
        const char *descriptor;
        const char16_t *text;
        quint32 count;
    } rows[] = {
        {"LineFeed", "ab\n", "s1h", u"<\"a.b.\\n\">", 3},
        {"Empty", "", "s1h", u"<\"\">", 0},
        {"ControlNames", QByteArray("\0\x01\a\b\t\v\f\r\x0e\x1b\x1f", 11), "s1h",
         u"<\"\\0.soh.\\a.\\b.\\t.vt.\\f.\\r.so.esc.us\">", 11},
        {"Utf8", "\xc3\xa4\xe2\x82\xac", "s4h", u"<\"ä.€\">", 2},
        {"OutsideTheBasicPlane", "a\xf0\x9f\x98\x80z", "s4h", u"<\"a.😀.z\">", 3},
        {"Utf16", QByteArray("\0a\0b", 4), "s10h", u"<\"a.b\">", 2},
        {"KelRoman", "\x80\xca", "s30h", u"<\"Ä.\u00a0\">", 2},
        {"HalfAPairAtTheEnd", "a+2AE-", "s66548h", u"<\"a.\xd801\">", 2},
        {"Undecodable", "\xff", "s4h", unable, 0},
        {"NoSuchEncoding", "a", "s99h", unable, 0},
        {"EncodingBeyondNumbers", "a", "s4294967300h", unable, 0},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        const LoneItem item(RegistryValue::data(row.bytes));
        const StyledText text = item->formatDataValueWithOptions(formatOf(row.descriptor));
        EXPECT_EQ(text.text(), QString::fromUtf16(row.text));
        EXPECT_EQ(item->numCharsInDataValue(), row.count);
    }
}

TEST(DataCharactersTest, DotsAreGrayAndTheRestWrapsAnywhere)
{
    const LoneItem item(RegistryValue::data("ab\n"));
    const StyledText text = item->formatDataValueWithOptions(formatOf("s1h"));
    EXPECT_EQ(text.attributes(), ValueStyles::characterWrap);
    const StyledText::Ranges dots{{3, 1, ValueStyles::separatorDot},
                                  {5, 1, ValueStyles::separatorDot}};
    EXPECT_EQ(text.overrides(), dots);
    item->formatDataValueWithOptions(formatOf("1xhu"));
    EXPECT_EQ(item->numCharsInDataValue(), 0u);
}

TEST(DataAutomaticTest, Renders)
{
    const struct
    {
        const char *name;
        QByteArray bytes;
        const char16_t *text;
        quint32 strings;
        qint32 machine = littleEndian;
    } rows[] = {
        {"OneString", QByteArray("abc\0", 4), u"<\"abc\">", 1},
        {"InnerEmptyString", QByteArray("a\0\0b\0", 5), u"<\"a\", \"\", \"b\">", 3},
        {"LeadingEmptyString", QByteArray("\0a\0", 3), u"<\"\", \"a\">", 2},
        {"TrailingNulsAreDropped", QByteArray("a\0\0\0", 4), u"<\"a\">", 1},
        {"TextNeedsNoByteOrder", QByteArray("a\0", 2), u"<\"a\">", 1, unknownOrder},
        {"SpaceCountsAsLetter", QByteArray("- \0", 3), u"<\"- \">", 1},
        {"QuarterHigh", QByteArray("abcd\x80\0", 6), u"<\"abcdÄ\">", 1},
        {"MoreThanAQuarterHigh", QByteArray("abc\x80\0", 5), u"<61 62 63 80 00>", 0},
        {"NoFinalNul", "abc", u"<61 62 63>", 0},
        {"NoLetter", QByteArray("+-\0", 3), u"<2b 2d 00>", 0},
        {"Tab", QByteArray("a\tb\0", 4), u"<61 09 62 00>", 0},
        {"Delete", QByteArray("a\x7f\0", 3), u"<61 7f 00>", 0},
        {"OnlyNuls", QByteArray("\0\0\0", 3), u"<00 00 00>", 0},
        {"Empty", "", u"<>", 0},
        {"BytesOfAnUnknown", "\xfe\x01", u"<?? ?\?>", 0, unknownOrder},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        const LoneItem item(RegistryValue::data(row.bytes), row.machine);
        const StyledText text = item->autoformattedDataValue();
        EXPECT_EQ(text.text(), QString::fromUtf16(row.text));
        EXPECT_EQ(item->numStringsInDataValue(), row.strings);
        EXPECT_EQ(text.attributes(),
                  row.strings ? ValueStyles::characterWrap : ValueStyles::fixedPitch);
    }
}
} // namespace
