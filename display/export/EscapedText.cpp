// SPDX-License-Identifier: Apache-2.0
#include "display/export/EscapedText.h"

#include <algorithm>

namespace {
bool isControl(QChar character)
{
    const char16_t unit = character.unicode();
    return unit < 0x20 || (unit >= 0x7F && unit < 0xA0) || unit == 0x061C ||
           (unit >= 0x200E && unit <= 0x200F) || (unit >= 0x2028 && unit <= 0x202E) ||
           (unit >= 0x2066 && unit <= 0x2069) || unit == 0xFEFF;
}

QString escape(char16_t unit)
{
    constexpr int hexadecimal = 16;
    switch (unit) {
    case u'\n':
        return QStringLiteral("\\n");
    case u'\r':
        return QStringLiteral("\\r");
    case u'\t':
        return QStringLiteral("\\t");
    default:
        return unit < 0x100 ? QStringLiteral("\\x%1").arg(unit, 2, hexadecimal, QLatin1Char('0'))
                            : QStringLiteral("\\u%1").arg(unit, 4, hexadecimal, QLatin1Char('0'));
    }
}
} // namespace

QString escapedText(const QString &text)
{
    if (std::none_of(text.begin(), text.end(), isControl))
        return text;
    QString escaped;
    for (const QChar character : text) {
        if (isControl(character))
            escaped += escape(character.unicode());
        else
            escaped += character;
    }
    return escaped;
}
