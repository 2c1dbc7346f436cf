#include "platform/widgets/PlainToolTip.h"

#include "platform/widgets/VisibleText.h"

#include <QStringList>
#include <QTextDocument>

namespace {
constexpr qsizetype longestText = 2000;
constexpr qsizetype longestLine = 1500; // so that some of the lines after it are left
constexpr qsizetype widestLine = 100;
constexpr qsizetype longestWord = 50;

QString visibleLine(const QString &line)
{
    QString shown = cutText(line, longestLine);
    for (QChar &character : shown) {
        if (character != u'\t')
            character = visibleCharacter(character);
    }
    return shown;
}

// Has a place to wrap in every long word.
QString breakable(const QString &line)
{
    QString broken;
    qsizetype word = 0;
    for (const QChar character : line) {
        word = character.isSpace() ? 0 : word + 1;
        if (word > longestWord && !character.isLowSurrogate()) {
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
    QString shown = cutText(lines.join(u'\n'), longestText);
    const bool isWide = std::any_of(lines.cbegin(), lines.cend(),
                                    [](const QString &line) { return line.size() > widestLine; });
    if (!Qt::mightBeRichText(shown) && !isWide)
        return shown;
    // Only markup is wrapped.
    return QStringLiteral("<p style=\"white-space: pre-wrap\">%1</p>")
        .arg(breakable(shown).toHtmlEscaped());
}
