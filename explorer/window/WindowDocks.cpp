// SPDX-License-Identifier: Apache-2.0
#include "explorer/window/WindowDocks.h"

#include "activity/DocumentActivity.h"
#include "explorer/findings/FindingsDock.h"
#include "explorer/log/EventLogDock.h"
#include "explorer/plots/PlotsDock.h"
#include "store/TavDataStore.h"

#include <QMainWindow>

namespace {
constexpr int firstHeight = 220; // pixels
} // namespace

WindowDocks::WindowDocks(QMainWindow &window, DocumentActivity &activity,
                         DocumentFindings &findings, std::shared_ptr<TavDataStore> store)
    : window_(window)
    , activity_(activity)
    , documentFindings_(findings)
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
        add(*log_);
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
        add(*plots_);
    }
    bringUp(*plots_);
}

bool WindowDocks::showsFindings() const
{
    return isSeen(findings_);
}

void WindowDocks::toggleFindings()
{
    if (showsFindings())
        return findings_->hide();
    if (!findings_) {
        findings_ = new FindingsDock(documentFindings_, store_, &window_);
        connect(findings_, &FindingsDock::entryChosen, this, &WindowDocks::entryChosen);
        connect(findings_, &FindingsDock::propertyChosen, this, &WindowDocks::propertyChosen);
        add(*findings_);
    }
    bringUp(*findings_);
}

// Not below another one's tab.
bool WindowDocks::isSeen(const QDockWidget *dock) const
{
    return dock && !dock->isHidden() && !covered_.contains(dock);
}

// As a tab beside the first of the others.
void WindowDocks::add(QDockWidget &dock)
{
    QDockWidget *const all[] = {log_, plots_, findings_};
    const auto *const other = std::find_if(std::begin(all), std::end(all),
                                           [&](auto *its) { return its && its != &dock; });
    connect(&dock, &QDockWidget::visibilityChanged, this, [this, &dock](bool isSeen) {
        if (isSeen || dock.isHidden())
            covered_.remove(&dock);
        else
            covered_.insert(&dock);
        Q_EMIT visibilityChanged();
    });
    window_.addDockWidget(Qt::BottomDockWidgetArea, &dock);
    if (other != std::end(all))
        window_.tabifyDockWidget(*other, &dock);
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
