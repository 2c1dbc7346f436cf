// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>
#include <ostream>

// Prints texts in failed comparisons.
inline void PrintTo(const QString &text, std::ostream *stream)
{
    if (text.isNull())
        *stream << "(null)";
    else
        *stream << '"' << text.toStdString() << '"';
}
