// SPDX-License-Identifier: Apache-2.0
#include "platform/widgets/ColumnResizer.h"

#include <QMouseEvent>
#include <QPainter>

ColumnResizer::ColumnResizer(QWidget *parent)
    : QWidget(parent)
{
    setCursor(Qt::SplitHCursor);
}

void ColumnResizer::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), palette().color(QPalette::Base));
    QColor line = palette().color(QPalette::Text); // visible in any theme
    line.setAlphaF(0.2F);
    painter.fillRect(width() / 2, 0, 1, height(), line);
}

void ColumnResizer::mousePressEvent(QMouseEvent *event)
{
    lastX_ = event->globalPosition().toPoint().x();
}

void ColumnResizer::mouseMoveEvent(QMouseEvent *event)
{
    const int x = event->globalPosition().toPoint().x();
    const int moved = x - std::exchange(lastX_, x);
    Q_EMIT draggedBy(isRightToLeft() ? -moved : moved);
}

void ColumnResizer::mouseReleaseEvent(QMouseEvent *)
{
    Q_EMIT dragEnded();
}

void ColumnResizer::mouseDoubleClickEvent(QMouseEvent *)
{
    Q_EMIT doubleClicked();
}
