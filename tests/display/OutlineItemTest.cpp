// SPDX-License-Identifier: Apache-2.0
#include "DisplayFixture.h"
#include "tests/support/QtPrinters.h"
#include "tests/support/RegistryValues.h"

#include "platform/preferences/PreferencesStore.h"

#include <gtest/gtest.h>

namespace {
class OutlineItemTest : public testing::Test
{
protected:
    static void setDefaultFormat(const char *descriptor)
    {
        PreferencesStore::standard().setValue(PreferenceKeys::defaultFormat.toString(),
                                              QString::fromLatin1(descriptor));
    }

    PreferencesFolder preferences_;
};

TEST_F(OutlineItemTest, TypesAndValuesByTheDefault)
{
    struct Row
    {
        RegistryValue value;
        const char *type;
        const char *text;
        const char *tooltip;
    };
    const RegistryValue number = RegistryValue::number(42, 2);
    const Row rows[] = {
        {values::dictionary({}), "Dictionary", "0 values", nullptr},
        {values::dictionary({{"a", values::number(1)}}), "Dictionary", "1 value", nullptr},
        {RegistryValue::array({number, number}), "Array", "2 values", nullptr},
        {RegistryValue::set({number}), "Set", "(Unknown value type)", nullptr},
        {RegistryValue::string(QStringLiteral("a b")), "String", "a b",
         "Nul-terminated ASCII string"},
        {RegistryValue::string(QString()), "String", "", "Nul-terminated ASCII string"},
        {number, "Number", "0x2a", "2-byte number interpreted in native byte order"},
        {RegistryValue::boolean(true), "Boolean", "True", nullptr},
        {RegistryValue::boolean(false), "Boolean", "False", nullptr},
        {RegistryValue::data(QByteArray("a\0", 2)), "Data", "<\"a\">",
         "2 bytes interpreted as a string in KelRoman encoding"},
        {RegistryValue::date(QDateTime::currentDateTimeUtc()), "Unknown", "(Unknown value type)",
         nullptr},
        {RegistryValue::null(), "Unknown", "(Unknown value type)", nullptr},
    };
    for (const Row &row : rows) {
        const LoneItem item(row.value);
        EXPECT_EQ(item->typeName(), QString::fromLatin1(row.type));
        EXPECT_EQ(item->displayValue().text(), QString::fromLatin1(row.text));
        EXPECT_EQ(item->valueTooltip(), QString::fromLatin1(row.tooltip)) << row.type;
    }
}

TEST_F(OutlineItemTest, TooltipsSayHowTheValueWasRead)
{
    struct Row
    {
        RegistryValue value;
        const char *format;
        const char16_t *tooltip;
    };
    const RegistryValue ten = RegistryValue::data(QByteArray(10, 'x'));
    const RegistryValue four = RegistryValue::number(1, 4);
    const Row rows[] = {
        {ten, "4xbu",
         u"10 bytes interpreted as 4-byte big-endian hexadecimal "
         u"(fragmentary bytes at end shown as \"…\")"},
        {ten, "2blu", u"10 bytes interpreted as 2-byte little-endian binary"},
        {ten, "1ohs", u"10 bytes interpreted as 1-byte native-endian octal"},
        {ten, "s4h", u"10 bytes interpreted as 10 Unicode (UTF-8) characters"},
        {ten, "s30h", u"10 bytes interpreted as 10 Western (KelRoman) characters"},
        {ten, "a", u"10 bytes autoformatted as hexadecimal bytes in host byte order"},
        {ten, "d", u"10 bytes autoformatted as hexadecimal bytes in host byte order"},
        {ten, "4xh", // cannot be read
         u"10 bytes interpreted as  native-endian  (fragmentary bytes at end shown as \"…\")"},
        {RegistryValue::data(QByteArray("a\0b\0", 4)), "a",
         u"4 bytes interpreted as 2 strings in KelRoman encoding"},
        {four, "4dhs", u"4-byte number as native-endian signed decimal"},
        {four, "1dbu", u"4-byte number as big-endian unsigned decimal"},
        {four, "s1h", u"4-byte number as native-endian "},
    };
    for (const Row &row : rows) {
        setDefaultFormat(row.format);
        const LoneItem item(row.value);
        item->displayValue();
        EXPECT_EQ(item->valueTooltip(), QString::fromUtf16(row.tooltip));
    }
}

TEST_F(OutlineItemTest, ValuesAreKeptUntilReset)
{
    MachineStore store;
    const EntryRef entry =
        store.entry({QStringLiteral("C")},
                    RegistryValue::array({values::dictionary({{"number", values::number(1)}}),
                                          RegistryValue::data(QByteArray(5, '\1'))}));
    auto &number = itemAt(entry, "Value/0/number");
    auto &data = itemAt(entry, "Value/1");
    EXPECT_EQ(number.displayValue().text(), QStringLiteral("0x1"));
    EXPECT_EQ(data.displayValue().text(), QStringLiteral("<01 01 01 01 01>"));

    setDefaultFormat("4bbu");
    EXPECT_EQ(number.displayValue().text(), QStringLiteral("0x1"));
    itemAt(entry, "").resetDisplayValueRecursive();
    EXPECT_EQ(number.displayValue().text(), QStringLiteral("0b1000000000000000000000000"));
    EXPECT_EQ(data.displayValue().text(), QStringLiteral("<0b00000001000000010000000100000001 …>"));
}

TEST_F(OutlineItemTest, NothingIsKnownOfTheMachineOnceTheEntryLeftItsStore)
{
    MachineStore store;
    EntryRef entry = store.entry({QStringLiteral("C")}, RegistryValue::data("\x01\x02"));
    const PropertyRef item = itemAt(entry, "Value").ref();
    entry->leaveStore();
    auto &outlineItem = static_cast<TavPropertyOutlineItem &>(*item);
    EXPECT_EQ(outlineItem.displayValue().text(), QStringLiteral("<?? ?\?>"));
    entry.reset();
    outlineItem.resetDisplayValueRecursive();
    EXPECT_EQ(outlineItem.displayValue().text(), QStringLiteral("<?? ?\?>"));
    EXPECT_TRUE(outlineItem.classPathForClass(QStringLiteral("C")).isNull());
}
} // namespace
