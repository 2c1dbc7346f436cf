// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "display/ValueUnit.h"

#include <QCoreApplication>

class RegistryValue;
class TavRegistryProperty;

// What a number means, for its tool tip.
class ValueReading
{
    Q_DECLARE_TR_FUNCTIONS(ValueReading)
public:
    // A line with the number in decimal and hexadecimal, and one in its unit where that is known.
    // Null: not a number.
    static QString ofProperty(const TavRegistryProperty &property);

    // "65536 (0x10000)"
    static QString inBothBases(const RegistryValue &number);
    // "1.5 GiB", "41.0 °C", "bits 0, 4-7"; null without a unit.
    static QString inUnit(const RegistryValue &number, const ValueUnit &unit);
};
