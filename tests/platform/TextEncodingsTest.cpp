// SPDX-License-Identifier: Apache-2.0
#include "platform/text/TextEncodings.h"

#include <QSet>
#include <gtest/gtest.h>

namespace {
constexpr quint32 koi8r = 65536 + 2084;
constexpr quint32 shiftJis = 65536 + 17;

TEST(TextDecodingTest, Decodes)
{
    const struct
    {
        const char *name;
        quint32 encoding;
        QByteArray bytes;
        const char16_t *text; // null: cannot be decoded
    } rows[] = {
        {"Ascii", TextEncodings::ascii, "ab", u"ab"},
        {"AsciiHighByte", TextEncodings::ascii, "a\x80", nullptr},
        {"Empty", TextEncodings::utf8, "", u""},
        {"Utf8", TextEncodings::utf8, "\xc3\xa4\xf0\x9f\x98\x80", u"ä😀"},
        {"Utf8CutShort", TextEncodings::utf8, "a\xc3", nullptr},
        {"Utf8Overlong", TextEncodings::utf8, "\xc0\xaf", nullptr},
        {"Utf8Surrogate", TextEncodings::utf8, "\xed\xa0\x80", nullptr},
        {"Latin1", TextEncodings::isoLatin1, "\xe4", u"ä"},
        {"WindowsLatin1", TextEncodings::windowsLatin1, "\x80", u"€"},
        {"Utf16BigEndianByDefault", TextEncodings::utf16, QByteArray("\0a", 2), u"a"},
        {"Utf16ByteOrderMark", TextEncodings::utf16,
         QByteArray("\xff\xfe"
                    "a\0",
                    4),
         u"a"},
        {"Utf16Odd", TextEncodings::utf16, QByteArray("\0ab", 3), nullptr},
        {"Utf16LoneSurrogate", TextEncodings::utf16, "\xd8\x01", nullptr},
        {"KelRoman", TextEncodings::kelRoman, "a\x80\xa5\xdb\xff", u"aÄ•€ˇ"},
        {"KelRomanPrivateUse", TextEncodings::kelRoman, "\xf0", u"\uf8ff"},
        {"Koi8", koi8r, "\xc1", u"а"},
        {"ShiftJis", shiftJis, "\x82\xa0\xb1", u"あｱ"},
        {"ShiftJisCutShort", shiftJis, "\x82", nullptr},
        {"NoSuchEncoding", 65536, "a", nullptr},
        {"NoEncoding", TextEncodings::none, "a", nullptr},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        const std::optional<QString> text = TextEncodings::decode(row.bytes, row.encoding);
        const auto expected = row.text ? std::optional(QString::fromUtf16(row.text)) : std::nullopt;
        EXPECT_EQ(text, expected);
    }
}

TEST(TextEncodingsTest, ReusedDecodersStartAfresh)
{
    EXPECT_FALSE(TextEncodings::decode("\x82", shiftJis));
    EXPECT_EQ(TextEncodings::decode("\xb1", shiftJis), QStringLiteral("ｱ"));
    EXPECT_FALSE(TextEncodings::decode(QByteArray("\xff\xfe\0", 3), TextEncodings::utf16));
    EXPECT_EQ(TextEncodings::decode(QByteArray("\0a", 2), TextEncodings::utf16),
              QStringLiteral("a"));
}

TEST(TextEncodingsTest, EveryAvailableEncodingHasAUniqueNameAndDecodes)
{
    QSet<QString> names;
    for (const quint32 encoding : TextEncodings::available()) {
        names.insert(TextEncodings::displayName(encoding));
        EXPECT_TRUE(TextEncodings::decode("", encoding)) << encoding;
        EXPECT_NE(TextEncodings::mostCompatibleLegacyEncoding(encoding), TextEncodings::none);
    }
    EXPECT_EQ(static_cast<std::size_t>(names.size()), TextEncodings::available().size());
    EXPECT_GT(names.size(), 80);
}

TEST(TextEncodingsTest, MostCompatibleLegacyEncodings)
{
    const auto legacy = TextEncodings::mostCompatibleLegacyEncoding;
    EXPECT_EQ(legacy(TextEncodings::utf8), TextEncodings::utf16);
    EXPECT_EQ(legacy(TextEncodings::ascii), TextEncodings::isoLatin1);
    EXPECT_EQ(legacy(TextEncodings::kelRoman), TextEncodings::isoLatin1);
    EXPECT_EQ(legacy(koi8r), 65536u + 8);
    EXPECT_EQ(legacy(65536 + 39), shiftJis);
    EXPECT_EQ(legacy(TextEncodings::none), TextEncodings::none);
}
} // namespace
