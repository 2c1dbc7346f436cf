#pragma once

#include "display/StyledText.h"

#include <QFont>
#include <QPalette>
#include <QTextLayout>

class QPainter;

// The two fonts that values are drawn in, of the same size.
struct ValueFonts
{
    explicit ValueFonts(const QFont &font);

    const QFont &of(const TextAttributes &attributes) const
    {
        return attributes.fixedPitch ? fixedPitch : plain;
    }

    QFont plain;
    QFont fixedPitch;
};

// A styled text broken into lines of a width, ready to be drawn.
class StyledTextLayout
{
public:
    StyledTextLayout(const StyledText &text, const ValueFonts &fonts, const QPalette &palette,
                     qreal width);

    static QTextOption::WrapMode wrapMode(const StyledText &text);

    qreal height() const { return height_; }
    qreal firstAscent() const;
    // Draws the lines that the clip touches; highlighted text is of one colour.
    void draw(QPainter &painter, const QPointF &position, const QRectF &clip,
              const QColor *highlight) const;

private:
    void setFormats(const StyledText &text, const ValueFonts &fonts, const QPalette &palette);
    void breakLines(const StyledText &text, qreal width);

    QTextLayout layout_;
    qreal height_ = 0;
};
