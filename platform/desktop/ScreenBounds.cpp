// SPDX-License-Identifier: Apache-2.0
#include "platform/desktop/ScreenBounds.h"

#include <QApplication>
#include <QDialog>
#include <QEvent>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QStyle>
#include <QVBoxLayout>
#include <QWindow>

namespace {
// The frame is unknown before a window is shown; other windows' frames are similar.
QMargins frameMargins(const QWidget &window)
{
    for (const QWidget *other : QApplication::topLevelWidgets()) {
        const QMargins margins = other->isVisible() && other->windowHandle()
                                     ? other->windowHandle()->frameMargins()
                                     : QMargins();
        if (!margins.isNull())
            return margins;
    }
    return {0, window.style()->pixelMetric(QStyle::PM_TitleBarHeight), 0, 0};
}

bool fits(const QSize &size, const QSize &room)
{
    return size == size.boundedTo(room);
}

void makeScrollable(QWidget &window)
{
    auto *const content = new QWidget;
    content->setLayout(window.layout()); // moves its widgets too
    auto *const area = new QScrollArea;
    area->setFrameShape(QFrame::NoFrame);
    area->setWidgetResizable(true);
    area->setWidget(content);
    auto *const layout = new QVBoxLayout(&window);
    layout->setContentsMargins({});
    layout->addWidget(area);
    window.setMinimumSize(0, 0);
    window.setMaximumSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
    const int bar = area->verticalScrollBar()->sizeHint().width();
    window.resize(content->sizeHint() + QSize(bar, bar));
}
} // namespace

ScreenBounds::ScreenBounds(QWidget &window)
    : QObject(&window)
{
    window.installEventFilter(this);
    if (window.testAttribute(Qt::WA_Resized)) // else its contents determine the size
        boundSize(window);                    // before the first layout
}

QSize ScreenBounds::maxSize(const QWidget &window)
{
    return window.screen()->availableGeometry().marginsRemoved(frameMargins(window)).size();
}

void ScreenBounds::boundSize(QWidget &window)
{
    const QSize room = maxSize(window);
    if (!fits(window.size(), room))
        window.resize(window.size().boundedTo(room));
}

bool ScreenBounds::eventFilter(QObject *watched, QEvent *event)
{
    auto &window = static_cast<QWidget &>(*watched);
    if (event->type() == QEvent::Show && !event->spontaneous()) {
        isOpening_ = true;
        fitIn(window);
    }
    // From now on its frame is known.
    const bool hasOpened =
        event->type() == QEvent::WindowActivate && std::exchange(isOpening_, false);
    const bool hasGrown = event->type() == QEvent::Resize && !event->spontaneous();
    if (hasOpened || (hasGrown && window.isVisible()))
        moveIn(window);
    return false;
}

void ScreenBounds::fitIn(QWidget &window)
{
    const bool isDialog = qobject_cast<QDialog *>(&window) && window.layout();
    if (isDialog && !fits(window.layout()->totalMinimumSize(), maxSize(window)))
        makeScrollable(window);
    boundSize(window);
}

void ScreenBounds::moveIn(QWidget &window)
{
    const QRect screen = window.screen()->availableGeometry();
    const QRect frame = window.frameGeometry();
    const QPoint last = screen.bottomRight() - frame.bottomRight() + frame.topLeft();
    const QPoint place(std::max(screen.left(), std::min(frame.left(), last.x())),
                       std::max(screen.top(), std::min(frame.top(), last.y())));
    if (place != frame.topLeft())
        window.move(place);
}
