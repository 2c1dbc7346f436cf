// SPDX-License-Identifier: Apache-2.0
#include "platform/widgets/VisibleText.h"

#include <algorithm>

namespace {
constexpr qsizetype maxLabelLength = 500;

bool turnsDirection(QChar c)
{
    const char16_t code = c.unicode();
    return (code >= 0x202A && code <= 0x202E) || (code >= 0x2066 && code <= 0x2069);
}

} // namespace

QChar visibleCharacter(QChar character)
{
    const char16_t code = character.unicode();
    if (code < 0x20)
        return static_cast<char16_t>(0x2400 + code);
    if (code == 0x7F)
        return char16_t(0x2421);
    if ((code >= 0x80 && code < 0xA0) || code == 0x2028 || code == 0x2029 ||
        turnsDirection(character))
        return QChar::ReplacementCharacter;
    return character;
}

QString visibleCharacters(const QString &text)
{
    QString shown = text;
    std::transform(shown.cbegin(), shown.cend(), shown.begin(), visibleCharacter);
    return shown;
}

QString cutText(const QString &text, qsizetype maxLength)
{
    if (text.size() <= maxLength)
        return text;
    return text.left(text.at(maxLength - 1).isHighSurrogate() ? maxLength - 1 : maxLength) +
           QChar(0x2026);
}

QString visibleText(const QString &text)
{
    return visibleCharacters(cutText(text, maxLabelLength));
}
