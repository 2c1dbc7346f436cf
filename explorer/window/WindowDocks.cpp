// SPDX-License-Identifier: Apache-2.0
#include "explorer/window/WindowDocks.h"

#include "activity/DocumentActivity.h"
#include "explorer/log/EventLogDock.h"
#include "explorer/plots/PlotsDock.h"
#include "store/TavDataStore.h"

#include <QMainWindow>

namespace {
constexpr int firstHeight = 220; // pixels
} // namespace

WindowDocks::WindowDocks(QMainWindow &window, DocumentActivity &activity,
                         std::shared_ptr<TavDataStore> store)
    : window_(window)
    , activity_(activity)
    , store_(std::move(store))
{}

bool WindowDocks::showsLog() const
{
    return isSeen(log_);
}

bool WindowDocks::showsPlots() const
{
    return isSeen(plots_);
}

void WindowDocks::toggleLog()
{
    if (showsLog())
        return log_->hide();
    if (!log_) {
        log_ = new EventLogDock(activity_.log(), store_, &window_);
        log_->setPaused(store_->isPaused());
        connect(log_, &EventLogDock::entryChosen, this, &WindowDocks::entryChosen);
        add(*log_, plots_);
    }
    bringUp(*log_);
}

void WindowDocks::togglePlots()
{
    if (showsPlots())
        plots_->hide();
    else
        showPlots();
}

void WindowDocks::showPlots()
{
    if (!plots_) {
        plots_ = new PlotsDock(activity_.plots(), &window_);
        plots_->setPaused(store_->isPaused());
        connect(plots_, &PlotsDock::entryChosen, this, &WindowDocks::entryChosen);
        add(*plots_, log_);
    }
    bringUp(*plots_);
}

// Not below the other one's tab.
bool WindowDocks::isSeen(const QDockWidget *dock) const
{
    return dock && !dock->isHidden() && !covered_.contains(dock);
}

void WindowDocks::add(QDockWidget &dock, QDockWidget *other)
{
    connect(&dock, &QDockWidget::visibilityChanged, this, [this, &dock](bool isSeen) {
        if (isSeen || dock.isHidden())
            covered_.remove(&dock);
        else
            covered_.insert(&dock);
        Q_EMIT visibilityChanged();
    });
    window_.addDockWidget(Qt::BottomDockWidgetArea, &dock);
    if (other)
        window_.tabifyDockWidget(other, &dock);
    else
        window_.resizeDocks({&dock}, {firstHeight}, Qt::Vertical);
}

void WindowDocks::bringUp(QDockWidget &dock)
{
    dock.show();
    dock.raise();
}

void WindowDocks::updatePause()
{
    if (log_)
        log_->setPaused(store_->isPaused());
    if (plots_)
        plots_->setPaused(store_->isPaused());
}
