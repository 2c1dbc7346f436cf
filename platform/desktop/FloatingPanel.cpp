// SPDX-License-Identifier: Apache-2.0
#include "platform/desktop/FloatingPanel.h"

#include "platform/desktop/ScreenBounds.h"

#include <QApplication>
#include <QScreen>
#include <QWidget>
#include <QWindow>

namespace {
constexpr int heightOfBars = 100; // pixels, roughly, at the top of a window

bool isOrHasAncestor(const QWindow *window, const QWindow &ancestor)
{
    return window == &ancestor || ancestor.isAncestorOf(window, QWindow::IncludeTransients);
}

// Window managers keep a tool window above its parent only.
void floatAbove(QWidget &panel, QWindow *window)
{
    QWindow *const own = panel.windowHandle();
    if (own && window && window->isTopLevel() && !isOrHasAncestor(window, *own) &&
        window->type() != Qt::Popup && window->type() != Qt::ToolTip)
        own->setTransientParent(window);
}

// Skips the list of a combo box, which is a window too.
QWindow *windowInUse()
{
    QWindow *window = QGuiApplication::focusWindow();
    while (window && window->type() == Qt::Popup)
        window = window->transientParent();
    const QWidget *const active = QApplication::activeWindow();
    return window || !active ? window : active->windowHandle();
}

// Beside the window where the screen has room, else with the smallest overlap.
void placeBeside(QWidget &panel, const QWindow &window)
{
    const QRect screen = window.screen()->availableGeometry();
    const QRect beside = window.frameGeometry();
    const QMargins frame = window.frameMargins(); // the panel's will be similar
    const QSize inner = panel.testAttribute(Qt::WA_Resized) ? panel.size() : panel.sizeHint();
    const QSize size =
        inner.boundedTo(ScreenBounds::maxSize(panel)).grownBy(frame).boundedTo(screen.size());
    const int before = beside.left() - screen.left();
    const int after = screen.right() - beside.right();
    QPoint place(beside.right() + 1, beside.top());
    if (size.width() > after)
        place.setX(beside.left() - size.width());
    if (size.width() > std::max(before, after))
        place = {after > before ? screen.right() + 1 - size.width() : screen.left(),
                 beside.top() + heightOfBars};
    const int lowest = screen.bottom() + 1 - size.height();
    panel.move(place.x(), std::clamp(place.y(), screen.top(), lowest));
}
} // namespace

void FloatingPanel::prepare(QWidget &panel)
{
    panel.setWindowFlag(Qt::Tool);
    panel.winId(); // creates the window handle
    QObject::connect(qGuiApp, &QGuiApplication::focusWindowChanged, &panel,
                     [&panel](QWindow *window) { floatAbove(panel, window); });
}

void FloatingPanel::makeKey(QWidget &panel, bool worksWhenModal)
{
    QWindow *const modal = worksWhenModal ? QGuiApplication::modalWindow() : nullptr;
    QWindow *const window = modal ? modal : windowInUse();
    floatAbove(panel, window);
    if (window && !panel.testAttribute(Qt::WA_Moved))
        placeBeside(panel, *window);
    panel.show();
    panel.raise();
    panel.activateWindow();
}
