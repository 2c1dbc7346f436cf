// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QRect>

class QColor;
class QFontMetrics;
class QPainter;
class QStyleOptionViewItem;
struct PlotLine;

// A small picture of the last minute of a plotted value, at the end of its cell.
class Sparkline
{
public:
    static int room(const QFontMetrics &metrics); // the space it needs beside the text
    static QRect place(const QStyleOptionViewItem &cell);
    static void paint(QPainter &painter, const QRect &place, const PlotLine &line,
                      const QColor &color);
};
