// SPDX-License-Identifier: Apache-2.0
#include "DisplayFixture.h"
#include "display/ValueReading.h"
#include "tests/support/QtPrinters.h"

#include <gtest/gtest.h>

namespace {
constexpr quint64 minusOne = ~Q_UINT64_C(0);

TEST(NumberRenderingTest, Renders)
{
    const struct
    {
        const char *name;
        int width;
        quint64 bits;
        PropertyFormatOptions options;
        const char *text;
    } rows[] = {
        {"AutomaticByteMinusOne", 1, minusOne, {.unit = -1}, "0xff"},
        {"AutomaticWordZero", 4, 0, {.unit = -1}, "0x0"},
        {"AutomaticLong", 8, minusOne, {.unit = -1}, "0xffffffffffffffff"},
        {"HexadecimalIsNotPadded", 4, 42, formatOf("4xhu"), "0x2a"},
        {"UnitIsTheNumbersOwnWide", 1, 0xff, formatOf("8xhu"), "0xff"},
        {"Octal", 2, 511, formatOf("2ohu"), "0o777"},
        {"OctalLong", 8, minusOne, formatOf("8ohu"), "0o1777777777777777777777"},
        {"Unsigned", 4, minusOne, formatOf("4dhu"), "4294967295"},
        {"Signed", 4, minusOne, formatOf("4dhs"), "-1"},
        {"SignedLong", 8, Q_UINT64_C(1) << 63, formatOf("8dhs"), "-9223372036854775808"},
        {"UnsignedLong", 8, minusOne, formatOf("8dhu"), "18446744073709551615"},
        // Units are read unsigned; only the two wide formats turn that into a sign.
        {"SignedByte", 1, minusOne, formatOf("1dhs"), "255"},
        {"SignedShort", 2, minusOne, formatOf("2dhs"), "65535"},
        {"ImpossibleSign", 4, minusOne, {.unit = 4, .base = 10, .signedness = 2}, "4294967295"},
        {"Binary", 4, 5, formatOf("4bhu"), "0b101"},
        {"BinaryZero", 8, 0, formatOf("8bhu"), "0b0"},
        {"BinaryTopBit", 1, 0x80, formatOf("1bhu"), "0b10000000"},
        {"BigEndianIsSwapped", 4, 1, formatOf("4xbu"), "0x1000000"},
        {"LittleEndianIsAsStored", 4, 1, formatOf("4xlu"), "0x1"},
        {"ByteHasNoOrder", 1, 1, formatOf("1xbu"), "0x1"},
        {"ImpossibleOrderReadsZero", 4, 7, {.unit = 4, .base = 16, .byteOrder = 3}, "0x0"},
        {"CharactersNative", 4, 0x41424344, formatOf("s1h"), "DCBA"},
        {"CharactersBigEndian", 4, 0x41424344, formatOf("s1b"), "ABCD"},
        {"CharactersEndAtZero", 8, 0x4100424344, formatOf("s1l"), "DCB"},
        {"CharactersOfZero", 2, 0, formatOf("s1h"), ""},
        {"CharactersAreAsciiInAnyEncoding", 1, 0xe4, formatOf("s5h"), "(internal error!)"},
        {"CharactersUnknownOrder", 4, 65, {.unit = 0, .byteOrder = 3}, "????"},
        {"CharacterUnknownOrder", 1, 65, {.unit = 0, .byteOrder = 3}, "A"},
        {"ImpossibleBase", 4, 1, {.unit = 4, .base = 7}, "(internal error!)"},
        {"UnreadableDescriptor", 4, 1, formatOf("4xh"), "(internal error!)"},
        {"UseDefaultIsNoRendering", 4, 1, {.unit = -2}, ""},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        // The snapshot's machine does not matter for a number.
        for (const auto order : {EntryStore::ByteOrderUnknown, EntryStore::BigEndian}) {
            const LoneItem item(RegistryValue::number(row.bits, row.width), order);
            const StyledText text = item->formatNumberWithOptions(row.options);
            EXPECT_EQ(text.text(), QString::fromLatin1(row.text));
            EXPECT_EQ(text.attributes(), TextAttributes());
            EXPECT_TRUE(text.overrides().empty());
        }
    }
}

TEST(NumberRenderingTest, ShowsANumberAsTheHostWroteIt)
{
    using Notation = RegistryValue::Notation;
    const PropertyFormatOptions automatic{.unit = -1};
    const auto shown = [](quint64 bits, int width, bool isSigned, Notation notation,
                          const PropertyFormatOptions &options) {
        return LoneItem(RegistryValue::number(bits, width, isSigned, notation))
            ->formatNumberWithOptions(options)
            .text()
            .toStdString();
    };
    EXPECT_EQ(shown(65536, 4, false, Notation::Decimal, automatic), "65536");
    EXPECT_EQ(shown(minusOne, 4, true, Notation::Decimal, automatic), "-1");
    EXPECT_EQ(shown(minusOne, 8, false, Notation::Decimal, automatic), "18446744073709551615");
    EXPECT_EQ(shown(0x8086, 2, false, Notation::Hexadecimal, automatic), "0x8086");
    EXPECT_EQ(shown(65536, 4, false, Notation::Decimal, formatOf("4xhu")), "0x10000");
}

TEST(ValueReadingTest, GivesTheOtherBaseAndTheUnit)
{
    constexpr const char *network = "DxNetDevice";
    constexpr const char *battery = "DxPowerSupplyDevice";
    constexpr const char *sensor = "DxHwmonDevice";
    constexpr const char *disk = "DxBlockDevice";
    const struct
    {
        const char *className;
        const char *key;
        qint64 number;
        const char *reading;
    } rows[] = {
        {network, "mtu", 1500, "1.5 KiB"},
        {network, "speed", 10000, "10 Gbit/s"},
        {network, "speed", -1, "-1 Mbit/s"},
        {network, "flags", 0x1043, "bits 0–1, 6, 12"},
        {network, "statistics/rx_bytes", 0, "0 bytes"},
        {network, "tx_queue_len", 1000, ""},
        {network, "bridge/ageing_time", 30000, "5 min"},
        {disk, "size", 3145728, "1.5 GiB"},
        {disk, "queue/read_ahead_kb", 128, "128.0 KiB"},
        {disk, "mtu", 1, ""},
        {sensor, "temp1_input", 41000, "41.0 °C"},
        {sensor, "temp1_type", 4, ""},
        {"DxPlatformDevice", "temp2_max", 41000, "41.0 °C"},
        {sensor, "in12_max", 12100, "12.1 V"},
        {sensor, "power1_input", 1500, "1.5 mW"},
        {battery, "temp", 315, "31.5 °C"},
        {battery, "charge_full", 4200000, "4.2 Ah"},
        {battery, "uevent/POWER_SUPPLY_VOLTAGE_NOW", 3, "3 µV"},
        {battery, "power/autosuspend", 90061, "1 d 1 h 1 min 1 s"},
        {battery, "power/runtime_active_time", 0, "0 s"},
        {"", "cpufreq/scaling_max_freq", 3600000, "3.6 GHz"},
    };
    for (const auto &row : rows) {
        const auto number =
            RegistryValue::number(static_cast<quint64>(row.number), 4, row.number < 0);
        const ValueUnit unit =
            ValueUnit::of({QString::fromUtf8(row.className), QStringLiteral("DxDevice")},
                          QString::fromUtf8(row.key));
        EXPECT_EQ(ValueReading::inUnit(number, unit).toStdString(), row.reading) << row.key;
    }
    EXPECT_EQ(ValueReading::inBothBases(RegistryValue::number(minusOne, 4, true)).toStdString(),
              "-1 (0xffffffff)");
}
} // namespace
