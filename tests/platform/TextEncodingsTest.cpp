#include "platform/TextEncodings.h"

#include <QSet>
#include <gtest/gtest.h>

namespace {
struct Decoding
{
    const char *name;
    quint32 encoding;
    QByteArray bytes;
    const char16_t *text; // none: cannot be decoded
};

class TextDecodingTest : public testing::TestWithParam<Decoding>
{};

TEST_P(TextDecodingTest, Decodes)
{
    const Decoding &row = GetParam();
    const std::optional<QString> text = TextEncodings::decode(row.bytes, row.encoding);
    const auto expected = row.text ? std::optional(QString::fromUtf16(row.text)) : std::nullopt;
    EXPECT_EQ(text, expected);
}

constexpr quint32 koi8r = 65536 + 2084;
constexpr quint32 shiftJis = 65536 + 17;

INSTANTIATE_TEST_SUITE_P(
    Rows, TextDecodingTest,
    testing::Values(Decoding{"Ascii", TextEncodings::ascii, "ab", u"ab"},
                    Decoding{"AsciiHighByte", TextEncodings::ascii, "a\x80", nullptr},
                    Decoding{"Empty", TextEncodings::utf8, "", u""},
                    Decoding{"Utf8", TextEncodings::utf8, "\xc3\xa4\xf0\x9f\x98\x80", u"ä😀"},
                    Decoding{"Utf8CutShort", TextEncodings::utf8, "a\xc3", nullptr},
                    Decoding{"Utf8Overlong", TextEncodings::utf8, "\xc0\xaf", nullptr},
                    Decoding{"Utf8Surrogate", TextEncodings::utf8, "\xed\xa0\x80", nullptr},
                    Decoding{"Latin1", TextEncodings::isoLatin1, "\xe4", u"ä"},
                    Decoding{"WindowsLatin1", TextEncodings::windowsLatin1, "\x80", u"€"},
                    Decoding{"Utf16BigEndianByDefault", TextEncodings::utf16, QByteArray("\0a", 2),
                             u"a"},
                    Decoding{"Utf16ByteOrderMark", TextEncodings::utf16,
                             QByteArray("\xff\xfe"
                                        "a\0",
                                        4),
                             u"a"},
                    Decoding{"Utf16Odd", TextEncodings::utf16, QByteArray("\0ab", 3), nullptr},
                    Decoding{"Utf16LoneSurrogate", TextEncodings::utf16, "\xd8\x01", nullptr},
                    Decoding{"KelRoman", TextEncodings::kelRoman, "a\x80\xa5\xdb\xff", u"aÄ•€ˇ"},
                    Decoding{"KelRomanPrivateUse", TextEncodings::kelRoman, "\xf0", u"\uf8ff"},
                    Decoding{"Koi8", koi8r, "\xc1", u"а"},
                    Decoding{"ShiftJis", shiftJis, "\x82\xa0\xb1", u"あｱ"},
                    Decoding{"ShiftJisCutShort", shiftJis, "\x82", nullptr},
                    Decoding{"NoSuchEncoding", 65536, "a", nullptr},
                    Decoding{"NoEncoding", TextEncodings::none, "a", nullptr}),
    [](const auto &row) { return std::string(row.param.name); });

TEST(TextEncodingsTest, ReusedDecodersStartAfresh)
{
    EXPECT_FALSE(TextEncodings::decode("\x82", shiftJis));
    EXPECT_EQ(TextEncodings::decode("\xb1", shiftJis), QStringLiteral("ｱ"));
    EXPECT_FALSE(TextEncodings::decode(QByteArray("\xff\xfe\0", 3), TextEncodings::utf16));
    EXPECT_EQ(TextEncodings::decode(QByteArray("\0a", 2), TextEncodings::utf16),
              QStringLiteral("a"));
}

TEST(TextEncodingsTest, EveryAvailableEncodingHasANameOfItsOwnAndDecodes)
{
    QSet<QString> names;
    for (const quint32 encoding : TextEncodings::available()) {
        names.insert(TextEncodings::displayName(encoding));
        EXPECT_TRUE(TextEncodings::decode("", encoding)) << encoding;
        EXPECT_NE(TextEncodings::mostCompatibleLegacyEncoding(encoding), TextEncodings::none);
    }
    EXPECT_EQ(static_cast<std::size_t>(names.size()), TextEncodings::available().size());
    EXPECT_GT(names.size(), 80);
    EXPECT_TRUE(TextEncodings::displayName(TextEncodings::none).isNull());
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
