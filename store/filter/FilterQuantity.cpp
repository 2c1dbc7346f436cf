// SPDX-License-Identifier: Apache-2.0
#include "store/filter/FilterQuantity.h"

#include <algorithm>
#include <tuple>

namespace {
bool isDigit(QChar character)
{
    return character >= u'0' && character <= u'9';
}

// What may follow a number. Letters without a space before them may be the rest of a hexadecimal
// number, as in "0a".
bool isUnit(QStringView text)
{
    constexpr QStringView hexLetters = u"abcdefABCDEF";
    const auto isHexLetter = [&](QChar character) { return hexLetters.contains(character); };
    if (!text.isEmpty() && std::all_of(text.begin(), text.end(), isHexLetter))
        return false;
    return std::all_of(text.begin(), text.end(), [](QChar c) {
        return c.isLetter() || c == u' ' || c == u'/' || c == u'%' || c == u'°';
    });
}
} // namespace

std::optional<FilterQuantity> FilterQuantity::parse(QStringView text)
{
    text = text.trimmed();
    const bool hasSign = text.startsWith(u'-') || text.startsWith(u'+');
    const bool isNegative = text.startsWith(u'-');
    if (hasSign)
        text = text.sliced(1);
    if (text.isEmpty() || !isDigit(text.front()))
        return std::nullopt;
    const QStringView prefix = text.first(std::min<qsizetype>(2, text.size()));
    std::optional<FilterQuantity> quantity;
    if (prefix == u"0x" || prefix == u"0X")
        quantity = parseInteger(text.sliced(2), 16);
    else if (prefix == u"0o")
        quantity = parseInteger(text.sliced(2), 8);
    else if (prefix == u"0b")
        quantity = parseInteger(text.sliced(2), 2);
    else
        quantity = parseDecimal(text);
    if (quantity)
        quantity->isNegative_ = isNegative && (quantity->whole_ != 0 || quantity->billionths_ != 0);
    return quantity;
}

std::optional<FilterQuantity> FilterQuantity::parseInteger(QStringView digits, int base)
{
    if (digits.isEmpty() || !digits.front().isLetterOrNumber())
        return std::nullopt; // no second sign
    bool isNumber = false;
    FilterQuantity quantity;
    quantity.whole_ = digits.toULongLong(&isNumber, base);
    return isNumber ? std::optional(quantity) : std::nullopt;
}

std::optional<FilterQuantity> FilterQuantity::parseDecimal(QStringView text)
{
    FilterQuantity quantity;
    const auto wholeEnd = std::find_if_not(text.begin(), text.end(), isDigit);
    bool isNumber = false;
    quantity.whole_ = text.first(wholeEnd - text.begin()).toULongLong(&isNumber);
    if (!isNumber)
        return std::nullopt; // too large
    const auto *at = wholeEnd;
    if (at != text.end() && *at == u'.') {
        quint32 place = 100'000'000;
        for (++at; at != text.end() && isDigit(*at); ++at, place /= 10)
            quantity.billionths_ += place * static_cast<quint32>(at->unicode() - u'0');
        if (at == wholeEnd + 1)
            return std::nullopt; // no digit after the point
    }
    const QStringView rest = text.sliced(at - text.begin());
    if (!isUnit(rest))
        return std::nullopt;
    quantity.unit_ = rest.trimmed();
    return quantity;
}

FilterQuantity FilterQuantity::of(const RegistryValue &number)
{
    FilterQuantity quantity;
    quantity.isNegative_ = number.isSignedNumber() && number.signedNumber() < 0;
    quantity.whole_ = quantity.isNegative_ ? 0 - static_cast<quint64>(number.signedNumber())
                                           : number.numberBits();
    return quantity;
}

FilterQuantity FilterQuantity::of(bool truth)
{
    FilterQuantity quantity;
    quantity.whole_ = truth;
    return quantity;
}

std::optional<int> FilterQuantity::compare(const FilterQuantity &a, const FilterQuantity &b)
{
    if (a.unit_ != b.unit_ && !a.unit_.isEmpty() && !b.unit_.isEmpty())
        return std::nullopt;
    if (a.isNegative_ != b.isNegative_)
        return a.isNegative_ ? -1 : 1;
    const auto magnitudeOf = [](const FilterQuantity &quantity) {
        return std::tuple(quantity.whole_, quantity.billionths_);
    };
    const int order = magnitudeOf(a) < magnitudeOf(b)   ? -1
                      : magnitudeOf(b) < magnitudeOf(a) ? 1
                                                        : 0;
    return a.isNegative_ ? -order : order;
}
