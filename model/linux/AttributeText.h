// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArrayView>
#include <QVarLengthArray>

// Splits the texts of attributes into views.
namespace AttributeText {
using View = QByteArrayView;
using Views = QVarLengthArray<View, 32>;

inline bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}
inline bool isHexDigit(char c)
{
    return isDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}
View trimmed(View text);
Views split(View text, char separator);
Views words(View text);
} // namespace AttributeText
