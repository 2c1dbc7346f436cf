// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>
#include <QStringList>

// The unit in which the kernel gives a number. Prefixed: shown with the SI prefix that fits.
struct ValueUnit
{
    enum class Kind : quint8 { None, Size, Rate, Prefixed, Plain, Time, Mask };

    Kind kind = Kind::None;
    double factor = 1; // of one of the symbol: 0.001 for thousandths
    const char *symbol = "";

    explicit operator bool() const { return kind != Kind::None; }

    // Of the property with this path of keys, such as "queue/read_ahead_kb", of an entry with these
    // classes. None: not known.
    static ValueUnit of(const QStringList &inheritance, const QString &keyPath);
};
