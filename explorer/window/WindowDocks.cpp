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
    return log_ && !log_->isHidden();
}

void WindowDocks::toggleLog()
{
    if (log_)
        return log_->setVisible(log_->isHidden());
    log_ = new EventLogDock(activity_.log(), store_, &window_);
    log_->setPaused(store_->isPaused());
    connect(log_, &EventLogDock::entryChosen, this, &WindowDocks::entryChosen);
    add(*log_);
}

bool WindowDocks::showsPlots() const
{
    return plots_ && !plots_->isHidden();
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
    if (plots_)
        return plots_->show();
    plots_ = new PlotsDock(activity_.plots(), &window_);
    plots_->setPaused(store_->isPaused());
    connect(plots_, &PlotsDock::entryChosen, this, &WindowDocks::entryChosen);
    add(*plots_);
}

void WindowDocks::add(QDockWidget &dock)
{
    connect(&dock, &QDockWidget::visibilityChanged, this, &WindowDocks::visibilityChanged);
    window_.addDockWidget(Qt::BottomDockWidgetArea, &dock);
    window_.resizeDocks({&dock}, {firstHeight}, Qt::Vertical);
    dock.show();
}

void WindowDocks::updatePause()
{
    if (log_)
        log_->setPaused(store_->isPaused());
    if (plots_)
        plots_->setPaused(store_->isPaused());
}
