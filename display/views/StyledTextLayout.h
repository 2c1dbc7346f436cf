// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "display/StyledText.h"

#include <QFont>
#include <QPalette>
#include <QTextLayout>

class QPainter;

// The two fonts for values, in the same size.
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

// A styled text broken into lines, ready to draw.
class StyledTextLayout
{
public:
    StyledTextLayout(const StyledText &text, const ValueFonts &fonts, const QPalette &palette,
                     qreal width);

    static QTextOption::WrapMode wrapMode(const StyledText &text);

    qreal height() const { return height_; }
    qreal firstAscent() const;
    // Draws the lines inside the clip; highlighted text has one colour.
    void draw(QPainter &painter, const QPointF &position, const QRectF &clip,
              const QColor *highlight) const;

private:
    void setFormats(const StyledText &text, const ValueFonts &fonts, const QPalette &palette);
    void breakLines(const StyledText &text, qreal width);

    QTextLayout layout_;
    qreal height_ = 0;
};
