// SPDX-License-Identifier: Apache-2.0
#include "display/views/ReadButton.h"

#include "platform/widgets/OutlineRowDelegate.h"

#include <QCoreApplication>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionButton>
#include <QStyleOptionViewItem>
#include <QWidget>

namespace {
constexpr int gap = 10;     // to the text
constexpr int padding = 10; // of the title
constexpr int marginAbove = 1;
} // namespace

QString ReadButton::title()
{
    return QCoreApplication::translate("ReadButton", "Read");
}

int ReadButton::room(const QFontMetrics &metrics)
{
    return gap + metrics.horizontalAdvance(title()) + 2 * padding;
}

QRect ReadButton::place(const QStyleOptionViewItem &cell, int textWidth)
{
    const int line = cell.fontMetrics.height() + 2 * OutlineRowDelegate::verticalMargin;
    const QRect logical(cell.rect.left() + textWidth + gap, cell.rect.top() + marginAbove,
                        room(cell.fontMetrics) - gap, line - 2 * marginAbove);
    return QStyle::visualRect(cell.direction, cell.rect, logical);
}

void ReadButton::paint(QPainter &painter, const QStyleOptionViewItem &cell, const QRect &place,
                       bool isDown)
{
    QStyleOptionButton button;
    button.initFrom(cell.widget);
    button.rect = place;
    button.text = title();
    button.state = QStyle::State_Enabled | (isDown ? QStyle::State_Sunken : QStyle::State_Raised);
    button.state.setFlag(QStyle::State_Active, cell.state & QStyle::State_Active);
    painter.setFont(cell.font);
    cell.widget->style()->drawControl(QStyle::CE_PushButton, &button, &painter, cell.widget);
}
