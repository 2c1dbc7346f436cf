// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/RegistryValue.h"

#include <QStringList>
#include <span>

class TavRegistryProperty;

// Where a value is in a property table: the keys of dictionaries that lead to it and, in lists,
// places from 0.
class ValuePath
{
public:
    static ValuePath of(const TavRegistryProperty &node);
    // "statistics/rx_bytes", "stat[3]" or "stat/3".
    static ValuePath parse(const QString &text);

    static QStringList ofNumbers(const RegistryValue &table); // the texts of all paths to numbers

    const QString &text() const { return text_; }         // "stat[3]"
    QString keyPath() const { return steps_.join(u'/'); } // "stat/3"
    // The value there; none: there is none.
    RegistryValue in(std::span<const RegistryValue::Member> table) const;

    friend bool operator==(const ValuePath &a, const ValuePath &b) { return a.steps_ == b.steps_; }

private:
    QStringList steps_; // keys, and places in digits
    QString text_;
};
