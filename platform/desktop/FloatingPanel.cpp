#include "platform/desktop/FloatingPanel.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>
#include <QWindow>

namespace {
constexpr int heightOfBars = 100; // roughly, at the top of a window

bool isOrHasAncestor(const QWindow *window, const QWindow &ancestor)
{
    return window == &ancestor || ancestor.isAncestorOf(window, QWindow::IncludeTransients);
}

// Window managers keep a tool above the window that it belongs to only.
void floatAbove(QWidget &panel, QWindow *window)
{
    QWindow *const own = panel.windowHandle();
    if (own && window && window->isTopLevel() && !isOrHasAncestor(window, *own) &&
        window->type() != Qt::Popup && window->type() != Qt::ToolTip)
        own->setTransientParent(window);
}
// Beside the window where the screen has room, else over as little of it as can be.
void placeBeside(QWidget &panel, const QWindow &window)
{
    const QRect screen = window.screen()->availableGeometry();
    const QRect beside = window.frameGeometry();
    const QSize size = panel.testAttribute(Qt::WA_Resized) ? panel.size() : panel.sizeHint();
    const int before = beside.left() - screen.left();
    const int after = screen.right() - beside.right();
    QPoint place(beside.right() + 1, beside.top());
    if (size.width() > after)
        place.setX(beside.left() - size.width());
    if (size.width() > std::max(before, after))
        place = {after > before ? screen.right() + 1 - size.width() : screen.left(),
                 beside.top() + heightOfBars};
    panel.move(place);
}
} // namespace

void FloatingPanel::prepare(QWidget &panel)
{
    panel.setWindowFlag(Qt::Tool);
    panel.winId(); // makes the window handle
    QObject::connect(qGuiApp, &QGuiApplication::focusWindowChanged, &panel,
                     [&panel](QWindow *window) { floatAbove(panel, window); });
}

void FloatingPanel::makeKey(QWidget &panel)
{
    QWindow *const modal = QGuiApplication::modalWindow();
    QWindow *const window = modal ? modal : QGuiApplication::focusWindow();
    floatAbove(panel, window);
    if (window && !panel.testAttribute(Qt::WA_Moved))
        placeBeside(panel, *window);
    panel.show();
    panel.raise();
    panel.activateWindow();
}
