#include "platform/desktop/FloatingPanel.h"

#include <QGuiApplication>
#include <QWidget>
#include <QWindow>

namespace {
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
    floatAbove(panel, modal ? modal : QGuiApplication::focusWindow());
    panel.show();
    panel.raise();
    panel.activateWindow();
}
