// SPDX-License-Identifier: Apache-2.0
#include "DisplayFixture.h"
#include "tests/support/RegistryValues.h"

#include "display/PropertyFormatStore.h"
#include "display/ShownValueSearch.h"
#include "platform/preferences/PreferencesStore.h"

#include <gtest/gtest.h>

using namespace values;

namespace {
class ShownValueSearchTest : public testing::Test
{
protected:
    bool finds(const char *query, const RegistryValue &value,
               qint32 byteOrder = EntryStore::LittleEndian)
    {
        MachineStore store(byteOrder);
        const EntryRef entry = store.entry(classes_, value);
        const bool isFound = ShownValueSearch(QString::fromUtf8(query))(*entry);
        EXPECT_EQ(entry->hasTree(), false);
        // The same from a tree, as of a snapshot that has lost values.
        const PropertyRef tree = entry->propertiesRef();
        entry->setTree(tree);
        EXPECT_EQ(ShownValueSearch(QString::fromUtf8(query))(*entry), isFound) << query;
        return isFound;
    }

    PreferencesFolder preferences_;
    const QStringList classes_{QStringLiteral("Leaf"), QStringLiteral("Root")};
};
} // namespace

TEST_F(ShownValueSearchTest, FindsNumbersByTextAndByValue)
{
    const RegistryValue vendor = number(0x8086, 2);
    for (const char *query : {"0x8086", "0X8086", "8086", "x80", "0x", "0x808", "32902", " 32902 ",
                              "0o100206", "0b1000000010000110"})
        EXPECT_TRUE(finds(query, vendor)) << query;
    for (const char *query :
         {"0x80860", "3290", "-32902", "0xg", "-", "", "08 6", "0b8086", "0x0x8086", "+32902"})
        EXPECT_FALSE(finds(query, vendor)) << query;
    const RegistryValue node =
        RegistryValue::number(UINT64_MAX, 4, true, RegistryValue::Notation::Decimal);
    for (const char *query : {"-1", "-", "-0x1"})
        EXPECT_TRUE(finds(query, node)) << query;
    EXPECT_FALSE(finds("ffff", node));
    const RegistryValue mtu =
        RegistryValue::number(65536, 4, false, RegistryValue::Notation::Decimal);
    for (const char *query : {"655", "65536", "0x10000"})
        EXPECT_TRUE(finds(query, mtu)) << query;
    EXPECT_FALSE(finds("0x1", mtu));
    EXPECT_TRUE(finds("-1", negative(-1)));
    EXPECT_TRUE(finds("-0x1", negative(-1, 1)));
    EXPECT_FALSE(finds("-1", number(0xffffffff)));
    EXPECT_TRUE(finds("-9223372036854775808", negative(INT64_MIN, 8)));
    EXPECT_FALSE(finds("-9223372036854775809", negative(INT64_MAX, 8)));
    EXPECT_TRUE(finds("18446744073709551615", number(UINT64_MAX, 8)));
    EXPECT_FALSE(finds("18446744073709551616", number(0, 8)));
}

TEST_F(ShownValueSearchTest, FindsOtherValuesByTheirText)
{
    EXPECT_TRUE(finds("TRU", RegistryValue::boolean(true)));
    EXPECT_FALSE(finds("true", RegistryValue::boolean(false)));
    const RegistryValue bytes = data("0186fe");
    for (const char *query : {"01 86 fe", "<01", "86 F", "fe>", " 86 ", "<01 86 fe>", "1 8", "6"})
        EXPECT_TRUE(finds(query, bytes)) << query;
    for (const char *query : {"0186", "01  86", "1 86 f>", "< 01", "<1", "01>", "zz", "87"})
        EXPECT_FALSE(finds(query, bytes)) << query;
    EXPECT_TRUE(finds("?? ??", bytes, EntryStore::ByteOrderUnknown));
    EXPECT_FALSE(finds("86", bytes, EntryStore::ByteOrderUnknown));
    EXPECT_TRUE(finds("<>", data("")));

    const RegistryValue strings = RegistryValue::data(QByteArray("Panel\0x\x8a\0", 9));
    for (const char *query : {"pAN", "\", \"X", "<\"panel", "Ä", "xä\""})
        EXPECT_TRUE(finds(query, strings)) << query;
    EXPECT_FALSE(finds("50 61", strings)); // its bytes are not shown
    EXPECT_FALSE(finds("panelx", strings));

    EXPECT_FALSE(finds("text", text("text"))); // another box finds strings
    EXPECT_TRUE(finds("0x2a", array({dictionary({{"deep", array({number(42)})}})})));
    EXPECT_FALSE(finds("0x2a", set({number(42)})));
}

// Whatever formats are stored, it finds what the properties view shows.
TEST_F(ShownValueSearchTest, FollowsTheStoredFormats)
{
    const RegistryValue value = dictionary({{"reg", array({number(42), data("6162")})}});
    const auto store = [](const char *classPath, const char *path, const char *format) {
        PropertyFormatStore::setFormat(QString::fromLatin1(classPath), QString::fromLatin1(path),
                                       formatOf(format));
    };
    PropertyFormatStore::setDefaultDescriptor(QStringLiteral("1dhu"));
    EXPECT_TRUE(finds("97 98", value));
    store("Root:", "//Value/reg", "1bhu");
    EXPECT_TRUE(finds("b101010", value));
    store("Root:Leaf:", "//Value/reg[0]", "2xbu");
    store("Root:Other:", "//Value/reg[0]", "1dhu");
    EXPECT_TRUE(finds("<0x6162>", value));
    EXPECT_FALSE(finds("b101010", value));
    store("Root:Leaf:", "//Value/reg[0]", "s30");
    EXPECT_TRUE(finds("a.b", value));

    MachineStore machine;
    const EntryRef entry = machine.entry(classes_, value);
    const QString shown = itemAt(entry, "Value/reg/1").displayValue().text();
    EXPECT_TRUE(finds(qUtf8Printable(shown), value));
}
