// SPDX-License-Identifier: Apache-2.0
#include "display/UnitFormatter.h"

#include "model/EntryStore.h"

#include <cstdio>

namespace {
// Formats for units of 1, 2, 4 and 8 bytes.
// Deliberate: data of 8 bytes is padded to 18 octal digits, fewer than the longest value has.
// Deliberate: units of 1 and 2 bytes are read unsigned, so they never show a minus sign.
constexpr const char *hexadecimalData[] = {"0x%2.2x", "0x%4.4x", "0x%8.8x", "0x%16.16llx"};
constexpr const char *hexadecimalNumber[] = {"0x%x", "0x%x", "0x%x", "0x%llx"};
constexpr const char *octalData[] = {"0o%3.3o", "0o%6.6o", "0o%12.12o", "0o%18.18llo"};
constexpr const char *octalNumber[] = {"0o%o", "0o%o", "0o%o", "0o%llo"};
constexpr const char *signedDecimal[] = {"%d", "%d", "%d", "%lld"};
constexpr const char *unsignedDecimal[] = {"%u", "%u", "%u", "%llu"};

quint64 readBigEndian(QByteArrayView bytes)
{
    quint64 value = 0;
    for (const char byte : bytes)
        value = value << 8 | static_cast<quint8>(byte);
    return value;
}

quint64 readLittleEndian(QByteArrayView bytes)
{
    quint64 value = 0;
    for (qsizetype i = bytes.size(); i-- > 0;)
        value = value << 8 | static_cast<quint8>(bytes[i]);
    return value;
}

void appendFormatted(QString &text, const char *format, qint64 unit, quint64 value)
{
    char buffer[32]; // 22 octal digits and a prefix at most
    const int length =
        unit == 8
            ? std::snprintf(buffer, sizeof buffer, format, static_cast<unsigned long long>(value))
            : std::snprintf(buffer, sizeof buffer, format, static_cast<unsigned int>(value));
    text += QLatin1StringView(buffer, length);
}
} // namespace

UnitFormatter::UnitFormatter(Kind kind, const PropertyFormatOptions &options,
                             qint32 machineByteOrder)
    : kind_(kind)
    , options_(options)
    , machineByteOrder_(machineByteOrder)
{}

const char *UnitFormatter::formatText(Kind kind, const PropertyFormatOptions &options)
{
    if (!options.isInteger())
        return nullptr;
    const int row = options.unit == 8 ? 3 : static_cast<int>(options.unit / 2);
    const bool isData = kind == Kind::Data;
    switch (options.base) {
    case 16:
        return (isData ? hexadecimalData : hexadecimalNumber)[row];
    case 8:
        return (isData ? octalData : octalNumber)[row];
    case 10:
        return (options.signedness == 1 ? signedDecimal : unsignedDecimal)[row];
    default:
        return nullptr;
    }
}

bool UnitFormatter::appendUnit(QString &text, QByteArrayView &bytes, const char *format) const
{
    if (!options_.isInteger() || bytes.size() < options_.unit || (!format && options_.base != 2))
        return false;
    const std::optional<quint64> value = read(bytes.first(options_.unit));
    bytes = bytes.sliced(options_.unit);
    if (options_.base == 2)
        appendBinary(text, value);
    else if (value)
        appendFormatted(text, format, options_.unit, *value);
    else
        text += QString(2 * options_.unit, u'?');
    return true;
}

std::optional<quint64> UnitFormatter::read(QByteArrayView unit) const
{
    if (unit.size() == 1)
        return readLittleEndian(unit);
    switch (options_.byteOrder) {
    case PropertyFormatOptions::BigEndian:
        return readBigEndian(unit);
    case PropertyFormatOptions::LittleEndian:
        return readLittleEndian(unit);
    case PropertyFormatOptions::NativeOrder:
        break;
    default:
        return 0;
    }
    if (kind_ == Kind::Number || machineByteOrder_ == EntryStore::LittleEndian)
        return readLittleEndian(unit);
    if (machineByteOrder_ == EntryStore::BigEndian)
        return readBigEndian(unit);
    return std::nullopt;
}

void UnitFormatter::appendBinary(QString &text, std::optional<quint64> value) const
{
    text += QLatin1StringView("0b");
    const auto bits = static_cast<int>(8 * options_.unit);
    if (!value) {
        text += QString(bits, u'?');
        return;
    }
    int bit = bits - 1;
    if (kind_ == Kind::Number) {
        while (bit > 0 && !(*value >> bit & 1))
            --bit;
    }
    for (; bit >= 0; --bit)
        text += *value >> bit & 1 ? u'1' : u'0';
}
