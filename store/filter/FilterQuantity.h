// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/RegistryValue.h"

#include <optional>

// A number with what follows it, such as "2.5 GT/s" or "500mA". Exact for all 64-bit integers and
// for nine decimal places.
class FilterQuantity
{
public:
    // Decimal, or with 0x, 0o or 0b in that base; none for a text that is no number. What follows a
    // decimal number must look like a unit: no digits, and nothing that dates or addresses have.
    static std::optional<FilterQuantity> parse(QStringView text); // which must stay
    static FilterQuantity of(const RegistryValue &number);
    static FilterQuantity of(bool truth);

    QStringView unit() const { return unit_; }
    // Negative, 0 or positive; none for different units. Without a unit, the number alone counts.
    static std::optional<int> compare(const FilterQuantity &a, const FilterQuantity &b);

private:
    static std::optional<FilterQuantity> parseInteger(QStringView digits, int base);
    static std::optional<FilterQuantity> parseDecimal(QStringView text);

    bool isNegative_ = false;
    quint64 whole_ = 0;
    quint32 billionths_ = 0;
    QStringView unit_ = {};
};
