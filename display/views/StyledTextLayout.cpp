// SPDX-License-Identifier: Apache-2.0
#include "display/views/StyledTextLayout.h"

#include "display/views/EntryColors.h"

#include <QFontDatabase>
#include <QFontMetricsF>
#include <QPainter>

namespace {
// Keeps the length, so that ranges stay valid.
QString withLineSeparators(QString text)
{
    text.replace(QLatin1String("\r\n"), QStringLiteral("\u200b\n"));
    text.replace(u'\n', QChar::LineSeparator);
    text.replace(u'\r', QChar::LineSeparator);
    return text;
}

// Breaking lines between words takes quadratic time in the maxWordLength word.
bool hasLongWord(const QString &text)
{
    constexpr qsizetype maxWordLength = 1000;
    qsizetype length = 0;
    return std::any_of(text.begin(), text.end(), [&](QChar c) {
        length = c.isSpace() ? 0 : length + 1;
        return length > maxWordLength;
    });
}

// Behind what differs: visible, and the text on it can still be read.
QColor markColor(const QPalette &palette)
{
    constexpr float share = 0.3F;
    const QColor base = palette.color(QPalette::Base);
    const QColor mark = EntryColors::colorForChangedItem();
    const auto mixed = [&](float under, float over) { return under + share * (over - under); };
    return QColor::fromRgbF(mixed(base.redF(), mark.redF()), mixed(base.greenF(), mark.greenF()),
                            mixed(base.blueF(), mark.blueF()));
}
} // namespace

ValueFonts::ValueFonts(const QFont &font)
    : plain(font)
    , fixedPitch(QFontDatabase::systemFont(QFontDatabase::FixedFont))
{
    if (font.pointSizeF() > 0)
        fixedPitch.setPointSizeF(font.pointSizeF());
    else
        fixedPitch.setPixelSize(font.pixelSize());
}

QTextOption::WrapMode StyledTextLayout::wrapMode(const StyledText &text)
{
    return text.attributes().wrap == TextAttributes::Wrap::Character || hasLongWord(text.text())
               ? QTextOption::WrapAnywhere
               : QTextOption::WrapAtWordBoundaryOrAnywhere;
}

StyledTextLayout::StyledTextLayout(const StyledText &text, const ValueFonts &fonts,
                                   const QPalette &palette, qreal width)
{
    const TextAttributes &attributes = text.attributes();
    layout_.setText(withLineSeparators(text.text()));
    layout_.setFont(fonts.of(attributes));
    setFormats(text, fonts, palette);
    breakLines(text, width);
}

void StyledTextLayout::setFormats(const StyledText &text, const ValueFonts &fonts,
                                  const QPalette &palette)
{
    QList<QTextLayout::FormatRange> formats;
    const QBrush &gray = palette.brush(QPalette::PlaceholderText);
    if (text.attributes().grayForeground) {
        QTextLayout::FormatRange all{0, static_cast<int>(text.text().size()), {}};
        all.format.setForeground(gray);
        formats.append(all);
    }
    if (text.attributes().link) {
        QTextLayout::FormatRange all{0, static_cast<int>(text.text().size()), {}};
        all.format.setForeground(palette.brush(QPalette::Link));
        all.format.setFontUnderline(true);
        formats.append(all);
    }
    for (const StyledText::Range &range : text.overrides()) {
        QTextCharFormat format;
        if (range.attributes.fixedPitch != text.attributes().fixedPitch)
            format.setFont(fonts.of(range.attributes));
        if (range.attributes.grayForeground)
            format.setForeground(gray);
        if (range.attributes.marked)
            format.setBackground(markColor(palette));
        if (!format.isEmpty())
            formats.append({static_cast<int>(range.start), static_cast<int>(range.length), format});
    }
    layout_.setFormats(formats);
}

void StyledTextLayout::breakLines(const StyledText &text, qreal width)
{
    const TextAttributes &attributes = text.attributes();
    QTextOption option;
    option.setWrapMode(wrapMode(text));
    layout_.setTextOption(option);
    const qreal indent =
        attributes.headIndent
            ? QFontMetricsF(layout_.font()).horizontalAdvance(QLatin1Char(attributes.headIndent))
            : 0;
    layout_.beginLayout();
    for (QTextLine line = layout_.createLine(); line.isValid(); line = layout_.createLine()) {
        const qreal x = line.lineNumber() == 0 ? 0 : indent;
        line.setLineWidth(std::max(width - x, 1.0));
        line.setPosition({x, height_});
        height_ += line.height();
    }
    layout_.endLayout();
}

qreal StyledTextLayout::firstAscent() const
{
    return layout_.lineCount() > 0 ? layout_.lineAt(0).ascent() : 0;
}

void StyledTextLayout::draw(QPainter &painter, const QPointF &position, const QRectF &clip,
                            const QColor *highlight) const
{
    QList<QTextLayout::FormatRange> selections;
    if (highlight) {
        QTextLayout::FormatRange all{0, static_cast<int>(layout_.text().size()), {}};
        all.format.setForeground(*highlight);
        selections.append(all);
    }
    layout_.draw(&painter, position, selections, clip);
}
