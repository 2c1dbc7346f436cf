#include "platform/desktop/VisibleText.h"

namespace {
constexpr qsizetype longestText = 500;

bool turnsDirection(QChar c)
{
    const char16_t code = c.unicode();
    return (code >= 0x202A && code <= 0x202E) || (code >= 0x2066 && code <= 0x2069);
}

// Zero for a character that is fine.
char16_t substituteFor(QChar c)
{
    const char16_t code = c.unicode();
    if (code < 0x20)
        return static_cast<char16_t>(0x2400 + code);
    if (code == 0x7F)
        return 0x2421;
    if ((code >= 0x80 && code < 0xA0) || code == 0x2028 || code == 0x2029 || turnsDirection(c))
        return QChar::ReplacementCharacter;
    return 0;
}
} // namespace

QString visibleText(const QString &text)
{
    QString shown = text;
    if (shown.size() > longestText) {
        shown.truncate(shown.at(longestText - 1).isHighSurrogate() ? longestText - 1 : longestText);
        shown.append(QChar(0x2026));
    }
    for (qsizetype i = 0; i < shown.size(); ++i) {
        if (const char16_t substitute = substituteFor(shown.at(i)))
            shown[i] = QChar(substitute);
    }
    return shown;
}
