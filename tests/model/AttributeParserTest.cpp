// SPDX-License-Identifier: Apache-2.0
#include "model/linux/AttributeParser.h"
#include "tests/support/RegistryValues.h"

#include <gtest/gtest.h>
#include <limits>

using namespace values;

TEST(AttributeParser, NotesHowANumberIsWritten)
{
    using Notation = RegistryValue::Notation;
    TextPool pool;
    const auto notation = [&pool](const char *name, const char *bytes) {
        return parseAttribute(name, bytes, pool).notation();
    };
    EXPECT_EQ(notation("mtu", "65536\n"), Notation::Decimal);
    EXPECT_EQ(notation("numa_node", "-1\n"), Notation::Decimal);
    EXPECT_EQ(notation("vendor", "0x8086\n"), Notation::Hexadecimal);
    EXPECT_EQ(notation("idVendor", "1d6b\n"), Notation::Hexadecimal);
    EXPECT_EQ(parseAttribute("x", "1 0x2\n", pool).elements()[1].notation(), Notation::Hexadecimal);
}

TEST(AttributeParser, GivesTheTypedValue)
{
    const struct
    {
        const char *title;
        const char *attribute;
        QByteArray bytes;
        RegistryValue value;
    } rows[] = {
        {"NulIsData", "x", QByteArray("a\0b\n", 4), data("6100620a")},
        {"NotUtf8IsData", "x", "caf\xe9\n", data("636166e90a")},
        {"Utf8IsText", "x", "caf\xc3\xa9\n", text("caf\xc3\xa9")},
        {"Empty", "x", "", text("")},
        {"LineFeedAlone", "x", "\n", text("")},
        {"Null", "x", "(null)\n", text("")},
        {"OnlyOneLineFeedIsCutOff", "x", "a\n\n", array({text("a"), text("")})},
        {"Assignments", "uevent", "MAJOR=8\nDEVNAME=sda\n",
         dictionary({{"MAJOR", number(8)}, {"DEVNAME", text("sda")}})},
        {"OneAssignment", "uevent", "DRIVER=ahci", dictionary({{"DRIVER", text("ahci")}})},
        {"AssignmentOfNothing", "uevent", "MODALIAS=\n", dictionary({{"MODALIAS", text("")}})},
        {"NoAssignment", "uevent", "", dictionary({})},
        {"TextWithASign", "x", "a b=c", text("a b=c")},
        {"KeyTwice", "x", "a=1\na=2", array({text("a=1"), text("a=2")})},
        {"Labels", "meminfo", "Node 0 Total:  16 kB\nNode 0 Free: 4 kB",
         dictionary({{"Node 0 Total", text("16 kB")}, {"Node 0 Free", text("4 kB")}})},
        {"Counts", "vmstat", "nr_free 12\nnr_dirty 0\n",
         dictionary({{"nr_free", number(12)}, {"nr_dirty", number(0)}})},
        {"OneLineOfWordsIsNoCount", "x", "pages 12", text("pages 12")},
        {"Table", "trans", "0 12 3\n4 0 5\n",
         array({array({number(0), number(12), number(3)}),
                array({number(4), number(0), number(5)})})},
        {"UnequalRows", "x", "0 1\n2\n", array({array({number(0), number(1)}), number(2)})},
        {"Lines", "x", "one\n2\n0x03", array({text("one"), number(2), number(3, 1)})},
        {"Ranges", "core_cpus_list", "0-3,8\n", array({text("0-3"), number(8)})},
        {"OneRange", "core_cpus_list", "7\n", array({number(7)})},
        {"RangesElsewhere", "online", "0-3\n", text("0-3")},
        {"Selection", "scheduler", "none [mq-deadline] kyber\n",
         dictionary({{"choices", array({text("none"), text("mq-deadline"), text("kyber")})},
                     {"selected", text("mq-deadline")}})},
        {"TwoBrackets", "x", "[a] [b]", text("[a] [b]")},
        {"HexByte", "x", "0x7f\n", number(127, 1)},
        {"HexThreeDigits", "x", "0x100", number(256, 2)},
        {"HexFourDigits", "x", "0x1000", number(4096, 2)},
        {"HexEightDigits", "x", "0x80000000", number(0x80000000)},
        {"HexSixDigits", "class", "0x0c0330", number(787248)},
        {"HexNineDigits", "x", "0x1ffffffff", number(8589934591, 8)},
        {"HexTooLong", "x", "0x11112222333344445", text("0x11112222333344445")},
        {"HexNothing", "x", "0x", text("0x")},
        {"Decimal", "x", "4294967295", number(4294967295)},
        {"DecimalWide", "x", "4294967296", number(4294967296, 8)},
        {"DecimalWidest", "x", "18446744073709551615", number(18446744073709551615U, 8)},
        {"DecimalTooWide", "x", "18446744073709551616", text("18446744073709551616")},
        {"Negative", "numa_node", "-1", negative(-1)},
        {"NegativeWide", "x", "-2147483649", negative(-2147483649, 8)},
        {"NegativeWidest", "x", "-9223372036854775808",
         negative(std::numeric_limits<qint64>::min(), 8)},
        {"NegativeTooWide", "x", "-9223372036854775809", text("-9223372036854775809")},
        {"NegativeZero", "x", "-0", text("-0")},
        {"LeadingZero", "x", "007", text("007")},
        {"Plus", "x", "+7", text("+7")},
        {"Yes", "x", "Y\n", RegistryValue::boolean(true)},
        {"No", "x", "N\n", RegistryValue::boolean(false)},
        {"NumbersOnALine", "stat", "  12 0 -3 0x10\n",
         array({number(12), number(0), negative(-3), number(16, 1)})},
        {"WordsOnALine", "x", "12 apples", text("12 apples")},
        {"BareHexIsText", "x", "0f", text("0f")},
        {"BareHexThatLooksDecimal", "bInterfaceClass", "10", text("10")},
        {"UsbIdentifier", "idVendor", "1005\n", number(4101, 2)},
        {"UsbIdentifierMisshapen", "idVendor", "12", number(12)},
    };
    TextPool pool;
    for (const auto &[title, attribute, bytes, value] : rows)
        EXPECT_TRUE(parseAttribute(attribute, bytes, pool) == value) << title;
}
