#pragma once

#include <QRect>
#include <QString>

class QFontMetrics;
class QPainter;
class QStyleOptionViewItem;

// The button behind the text of a cell that reads an attribute. Drawn, since many rows may have
// one.
class ReadButton
{
public:
    static QString title();
    static int room(const QFontMetrics &metrics); // what it takes from the text's width
    // In a cell whose first line is as wide as given.
    static QRect place(const QStyleOptionViewItem &cell, int textWidth);
    static void paint(QPainter &painter, const QStyleOptionViewItem &cell, const QRect &place,
                      bool isDown);
};
