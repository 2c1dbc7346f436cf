#pragma once

#include <QString>
#include <ostream>

// Lets a failed comparison of texts show them.
inline void PrintTo(const QString &text, std::ostream *stream)
{
    if (text.isNull())
        *stream << "(null)";
    else
        *stream << '"' << text.toStdString() << '"';
}
