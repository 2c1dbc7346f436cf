#include "platform/desktop/PlainToolTip.h"

#include <QStringList>
#include <QTextDocument>

namespace {
constexpr qsizetype longestText = 2000;
constexpr qsizetype longestLine = 100;

bool hasLongLine(const QString &text)
{
    const auto lines = QStringView(text).split(u'\n');
    return std::any_of(lines.begin(), lines.end(),
                       [](QStringView line) { return line.size() > longestLine; });
}
} // namespace

QString plainToolTip(const QString &text)
{
    QString shown = text;
    if (shown.size() > longestText) {
        shown.truncate(longestText);
        shown.append(QChar(0x2026));
    }
    if (!Qt::mightBeRichText(shown) && !hasLongLine(shown))
        return shown;
    // Only markup is wrapped.
    return QStringLiteral("<p style=\"white-space: pre-wrap\">%1</p>").arg(shown.toHtmlEscaped());
}
