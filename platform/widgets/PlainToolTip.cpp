// SPDX-License-Identifier: Apache-2.0
#include "platform/widgets/PlainToolTip.h"

#include "platform/widgets/VisibleText.h"

#include <QStringList>
#include <QTextDocument>

namespace {
constexpr qsizetype maxTextLength = 2000;
constexpr qsizetype maxLineLength = 1500; // leaves room for the lines after it
constexpr qsizetype maxUnwrappedLength = 100;
constexpr qsizetype maxWordLength = 50;

QString visibleLine(const QString &line)
{
    QString shown = cutText(line, maxLineLength);
    for (QChar &character : shown) {
        if (character != u'\t')
            character = visibleCharacter(character);
    }
    return shown;
}

// Adds break opportunities to long words.
QString breakable(const QString &line)
{
    QString broken;
    qsizetype word = 0;
    for (const QChar character : line) {
        word = character.isSpace() ? 0 : word + 1;
        if (word > maxWordLength && !character.isLowSurrogate()) {
            broken += QChar(0x200B);
            word = 1;
        }
        broken += character;
    }
    return broken;
}
} // namespace

QString plainToolTip(const QString &text)
{
    QStringList lines = text.split(u'\n');
    for (QString &line : lines)
        line = visibleLine(line);
    QString shown = cutText(lines.join(u'\n'), maxTextLength);
    const bool isWide = std::any_of(lines.cbegin(), lines.cend(), [](const QString &line) {
        return line.size() > maxUnwrappedLength;
    });
    if (!Qt::mightBeRichText(shown) && !isWide)
        return shown;
    // Qt wraps only rich text.
    return QStringLiteral("<p style=\"white-space: pre-wrap\">%1</p>")
        .arg(breakable(shown).toHtmlEscaped());
}
