// SPDX-License-Identifier: Apache-2.0
#include "explorer/selection/HistoryButtons.h"

#include <QApplication>
#include <QMouseEvent>
#include <QWidget>

HistoryButtons::HistoryButtons(QWidget &window)
    : QObject(&window)
    , window_(window)
{
    qApp->installEventFilter(this);
}

bool HistoryButtons::eventFilter(QObject *receiver, QEvent *event)
{
    if (event->type() != QEvent::MouseButtonPress || !receiver->isWidgetType() ||
        static_cast<QWidget *>(receiver)->window() != &window_)
        return false;
    switch (static_cast<QMouseEvent *>(event)->button()) {
    case Qt::BackButton:
        Q_EMIT backPressed();
        return true;
    case Qt::ForwardButton:
        Q_EMIT forwardPressed();
        return true;
    default:
        return false;
    }
}
