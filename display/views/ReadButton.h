// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QRect>
#include <QString>

class QFontMetrics;
class QPainter;
class QStyleOptionViewItem;

// The button after a cell's text that reads an attribute. Drawn rather than a widget, because many
// rows may have one.
class ReadButton
{
public:
    static QString title();
    static int room(const QFontMetrics &metrics); // the space it needs beside the text
    // In a cell whose first line has the given width.
    static QRect place(const QStyleOptionViewItem &cell, int textWidth);
    static void paint(QPainter &painter, const QStyleOptionViewItem &cell, const QRect &place,
                      bool isDown);
};
