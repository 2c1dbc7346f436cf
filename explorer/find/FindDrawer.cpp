// SPDX-License-Identifier: Apache-2.0
#include "explorer/find/FindDrawer.h"

#include "platform/desktop/InterfaceLoader.h"

#include <QBoxLayout>
#include <QDockWidget>
#include <QEvent>
#include <QMainWindow>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>

FindDrawer::FindDrawer(QMainWindow &window, QDockWidget &drawer)
    : QObject(&window)
    , window_(window)
    , drawer_(drawer)
    , minHeight_(window.minimumHeight())
{
    // The options scroll where they are too high, but never sideways.
    auto *const options = InterfaceLoader::outlet<QScrollArea>(drawer, "findOptionsArea");
    options->setMinimumWidth(options->widget()->minimumSizeHint().width() +
                             options->verticalScrollBar()->sizeHint().width());
    window.installEventFilter(this);
    drawer.installEventFilter(this);
}

bool FindDrawer::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == &window_ && event->type() == QEvent::Resize)
        arrange();
    else if (watched == &drawer_ &&
             (event->type() == QEvent::Show || event->type() == QEvent::Hide) && isInWindow())
        makeRoom();
    return false;
}

// False while the window is being destroyed, which hides the drawer once more.
bool FindDrawer::isInWindow() const
{
    return qobject_cast<QMainWindow *>(drawer_.parentWidget()) != nullptr;
}

void FindDrawer::arrange()
{
    const bool isBeside = window_.width() >= minWidthBeside;
    const auto area = isBeside ? Qt::RightDockWidgetArea : Qt::BottomDockWidgetArea;
    if (window_.dockWidgetArea(&drawer_) == area)
        return;
    static_cast<QBoxLayout *>(drawer_.widget()->layout())
        ->setDirection(isBeside ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
    // Otherwise it keeps the size that it had in the other place.
    drawer_.widget()->updateGeometry();
    drawer_.updateGeometry();
    window_.addDockWidget(area, &drawer_);
    makeRoom();
}

// Below the rest it needs height: the window grows, within its screen.
void FindDrawer::makeRoom()
{
    int height = minHeight_;
    if (!drawer_.isHidden() && window_.dockWidgetArea(&drawer_) == Qt::BottomDockWidgetArea) {
        const int onScreen =
            window_.screen()->availableGeometry().bottom() + 1 - window_.geometry().top();
        height = std::max(height, std::min(window_.minimumSizeHint().height(), onScreen));
    }
    window_.setMinimumHeight(height);
}
