// SPDX-License-Identifier: Apache-2.0
#include "model/linux/AttributeNumbers.h"

#include "model/linux/AttributeText.h"

#include <charconv>

namespace AttributeNumbers {
namespace {
using namespace AttributeText;
using Value = RegistryValue;

int widthOfHexDigits(qsizetype digits)
{
    return digits <= 2 ? 1 : digits <= 4 ? 2 : digits <= 8 ? 4 : 8;
}

Value hexNumber(View text)
{
    constexpr qsizetype maxDigits = 16;
    const View digits = text.sliced(2);
    if (digits.isEmpty() || digits.size() > maxDigits ||
        !std::all_of(digits.begin(), digits.end(), isHexDigit))
        return {};
    return Value::number(parseUnsigned(digits, 16).value_or(0), widthOfHexDigits(digits.size()),
                         false, Value::Notation::Hexadecimal);
}
} // namespace

std::optional<quint64> parseUnsigned(View digits, int base)
{
    quint64 number = 0;
    const auto result = std::from_chars(digits.begin(), digits.end(), number, base);
    if (result.ec != std::errc() || result.ptr != digits.end())
        return std::nullopt;
    return number;
}

Value decimalNumber(View text)
{
    const bool negative = text.startsWith('-');
    const View digits = negative ? text.sliced(1) : text;
    if (digits.isEmpty() || !isDigit(digits.front()) ||
        (digits.front() == '0' && (digits.size() > 1 || negative)))
        return {};
    const auto number = parseUnsigned(digits, 10);
    if (!number)
        return {};
    if (!negative)
        return Value::number(*number, *number <= 0xffffffff ? 4 : 8, false,
                             Value::Notation::Decimal);
    constexpr quint64 smallest = quint64(1) << 63;
    if (*number > smallest)
        return {};
    return Value::number(0 - *number, *number <= quint64(1) << 31 ? 4 : 8, true,
                         Value::Notation::Decimal);
}

Value number(View text)
{
    if (text.isEmpty())
        return {};
    return text.startsWith("0x") ? hexNumber(text) : decimalNumber(text);
}

Value::Elements numbers(View line)
{
    Value::Elements values;
    for (const View word : words(line)) {
        Value value = number(word);
        if (value.isNone())
            return {};
        values.push_back(std::move(value));
    }
    return values;
}
} // namespace AttributeNumbers
