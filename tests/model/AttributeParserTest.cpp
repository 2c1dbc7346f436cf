#include "model/linux/AttributeParser.h"

#include <gtest/gtest.h>

namespace {
using Type = RegistryValue::Type;

// A value in one line: 5:4 for a 4-byte number, "text", <hex>, [elements], {key=value}.
std::string shown(const RegistryValue &value)
{
    const auto list = [](std::span<const RegistryValue> elements) {
        std::string text;
        for (const RegistryValue &element : elements)
            text += (text.empty() ? "" : " ") + shown(element);
        return text;
    };
    std::string text;
    switch (value.type()) {
    case Type::Number:
        return (value.isSignedNumber() ? std::to_string(value.signedNumber())
                                       : std::to_string(value.numberBits())) +
               ":" + std::to_string(value.numberWidth());
    case Type::String:
        return '"' + value.toString().toStdString() + '"';
    case Type::Data:
        return '<' + value.toData().toHex().toStdString() + '>';
    case Type::Boolean:
        return value.toBoolean() ? "true" : "false";
    case Type::Array:
        return '[' + list(value.elements()) + ']';
    case Type::Dictionary:
        for (const auto &[key, member] : value.members())
            text += (text.empty() ? "" : " ") + key.toOwner().toStdString() + '=' + shown(member);
        return '{' + text + '}';
    default:
        return "?";
    }
}

struct Row
{
    const char *title;
    const char *attribute;
    QByteArray bytes;
    const char *value;
};

std::ostream &operator<<(std::ostream &stream, const Row &row)
{
    return stream << row.title;
}

class AttributeParser : public testing::TestWithParam<Row>
{};

QByteArray bytes(const char *text, int size)
{
    return QByteArray(text, size);
}

const Row rows[] = {
    {"NulIsData", "x", bytes("a\0b\n", 4), "<6100620a>"},
    {"NotUtf8IsData", "x", "caf\xe9\n", "<636166e90a>"},
    {"Utf8IsText", "x", "caf\xc3\xa9\n", "\"caf\xc3\xa9\""},
    {"Empty", "x", "", "\"\""},
    {"LineFeedAlone", "x", "\n", "\"\""},
    {"Null", "x", "(null)\n", "\"\""},
    {"OnlyOneLineFeedIsCutOff", "x", "a\n\n", "[\"a\" \"\"]"},
    {"Assignments", "uevent", "MAJOR=8\nDEVNAME=sda\n", "{MAJOR=8:4 DEVNAME=\"sda\"}"},
    {"OneAssignment", "uevent", "DRIVER=ahci", "{DRIVER=\"ahci\"}"},
    {"AssignmentOfNothing", "uevent", "MODALIAS=\n", "{MODALIAS=\"\"}"},
    {"NoAssignment", "uevent", "", "{}"},
    {"TextWithASign", "x", "a b=c", "\"a b=c\""},
    {"KeyTwice", "x", "a=1\na=2", "[\"a=1\" \"a=2\"]"},
    {"Labels", "meminfo", "Node 0 Total:  16 kB\nNode 0 Free: 4 kB",
     "{Node 0 Total=\"16 kB\" Node 0 Free=\"4 kB\"}"},
    {"Counts", "vmstat", "nr_free 12\nnr_dirty 0\n", "{nr_free=12:4 nr_dirty=0:4}"},
    {"OneLineOfWordsIsNoCount", "x", "pages 12", "\"pages 12\""},
    {"Table", "trans", "0 12 3\n4 0 5\n", "[[0:4 12:4 3:4] [4:4 0:4 5:4]]"},
    {"UnequalRows", "x", "0 1\n2\n", "[[0:4 1:4] 2:4]"},
    {"Lines", "x", "one\n2\n0x03", "[\"one\" 2:4 3:1]"},
    {"Ranges", "core_cpus_list", "0-3,8\n", "[\"0-3\" 8:4]"},
    {"OneRange", "core_cpus_list", "7\n", "[7:4]"},
    {"RangesElsewhere", "online", "0-3\n", "\"0-3\""},
    {"Selection", "scheduler", "none [mq-deadline] kyber\n",
     "{choices=[\"none\" \"mq-deadline\" \"kyber\"] selected=\"mq-deadline\"}"},
    {"TwoBrackets", "x", "[a] [b]", "\"[a] [b]\""},
    {"HexByte", "x", "0x7f\n", "127:1"},
    {"HexThreeDigits", "x", "0x100", "256:2"},
    {"HexSixDigits", "class", "0x0c0330", "787248:4"},
    {"HexNineDigits", "x", "0x1ffffffff", "8589934591:8"},
    {"HexTooLong", "x", "0x11112222333344445", "\"0x11112222333344445\""},
    {"HexNothing", "x", "0x", "\"0x\""},
    {"Decimal", "x", "4294967295", "4294967295:4"},
    {"DecimalWide", "x", "4294967296", "4294967296:8"},
    {"DecimalWidest", "x", "18446744073709551615", "18446744073709551615:8"},
    {"DecimalTooWide", "x", "18446744073709551616", "\"18446744073709551616\""},
    {"Negative", "numa_node", "-1", "-1:4"},
    {"NegativeWide", "x", "-2147483649", "-2147483649:8"},
    {"NegativeWidest", "x", "-9223372036854775808", "-9223372036854775808:8"},
    {"NegativeTooWide", "x", "-9223372036854775809", "\"-9223372036854775809\""},
    {"NegativeZero", "x", "-0", "\"-0\""},
    {"LeadingZero", "x", "007", "\"007\""},
    {"Plus", "x", "+7", "\"+7\""},
    {"Yes", "x", "Y\n", "true"},
    {"No", "x", "N\n", "false"},
    {"NumbersOnALine", "stat", "  12 0 -3 0x10\n", "[12:4 0:4 -3:4 16:1]"},
    {"WordsOnALine", "x", "12 apples", "\"12 apples\""},
    {"BareHexIsText", "x", "0f", "\"0f\""},
    {"BareHexThatLooksDecimal", "bInterfaceClass", "10", "\"10\""},
    {"UsbIdentifier", "idVendor", "1005\n", "4101:2"},
    {"UsbIdentifierMisshapen", "idVendor", "12", "12:4"},
};

TEST_P(AttributeParser, GivesTheTypedValue)
{
    TextPool pool;
    EXPECT_EQ(shown(parseAttribute(GetParam().attribute, GetParam().bytes, pool)),
              GetParam().value);
}

INSTANTIATE_TEST_SUITE_P(Rows, AttributeParser, testing::ValuesIn(rows),
                         [](const auto &row) { return std::string(row.param.title); });
} // namespace
