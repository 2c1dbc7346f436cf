// SPDX-License-Identifier: Apache-2.0
#include "platform/widgets/ColumnBrowserList.h"

#include "platform/widgets/ColumnBrowserRowDelegate.h"

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QStyle>

ColumnBrowserList::ColumnBrowserList(QWidget *parent)
    : QListView(parent)
{
    setItemDelegate(new ColumnBrowserRowDelegate(this));
    const int mark = style()->pixelMetric(QStyle::PM_SmallIconSize);
    setIconSize({mark, mark}); // no higher than a row without an icon
    setFrameShape(NoFrame);
    setUniformItemSizes(true);
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setEditTriggers(NoEditTriggers);
    setFocusPolicy(Qt::ClickFocus);
    viewport()->setFocusProxy(nullptr); // one stop of the tab key
}

int ColumnBrowserList::widthOfContents() const
{
    int width = 0;
    for (QModelIndex row = indexAt({0, 0});
         row.isValid() && visualRect(row).top() < viewport()->height();
         row = row.siblingAtRow(row.row() + 1))
        width = std::max(width, sizeHintForIndex(row).width());
    return width + this->width() - viewport()->width();
}

void ColumnBrowserList::keyPressEvent(QKeyEvent *event)
{
    if (event->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) {
        event->ignore(); // the window handles these keys
        return;
    }
    const bool isLeft = event->key() == Qt::Key_Left;
    if (event->modifiers() & Qt::ShiftModifier || (!isLeft && event->key() != Qt::Key_Right)) {
        QListView::keyPressEvent(event);
        return;
    }
    if (isLeft == isLeftToRight())
        Q_EMIT wentBack();
    else
        Q_EMIT wentForward();
    event->accept();
}

void ColumnBrowserList::mousePressEvent(QMouseEvent *event)
{
    QListView::mousePressEvent(event);
    const QModelIndex row = indexAt(event->position().toPoint());
    if (row.isValid() && event->button() == Qt::LeftButton)
        Q_EMIT rowPressed(row.row());
}

void ColumnBrowserList::contextMenuEvent(QContextMenuEvent *event)
{
    event->accept();
    Q_EMIT contextMenuRequested(*event);
}

// The selection of the column that has the focus stands out.
void ColumnBrowserList::focusInEvent(QFocusEvent *event)
{
    QListView::focusInEvent(event);
    viewport()->update();
}

void ColumnBrowserList::focusOutEvent(QFocusEvent *event)
{
    QListView::focusOutEvent(event);
    viewport()->update();
}
