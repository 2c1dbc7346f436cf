// SPDX-License-Identifier: Apache-2.0
// A window that shows a comparison.
#include "explorer/comparison/ComparisonBar.h"
#include "explorer/comparison/ComparisonDocument.h"
#include "explorer/comparison/ComparisonExport.h"
#include "explorer/comparison/DifferenceSteps.h"
#include "explorer/window/MenuCommands.h"
#include "explorer/window/TavWindowController.h"
#include "platform/host/SystemBeep.h"

#include <QBoxLayout>
#include <QMainWindow>

namespace {
constexpr quint64 maxOpened = 500; // differences that are all visible from the start
} // namespace

const ComparisonStore *TavWindowController::comparison() const
{
    return comparisonDocument_ ? &comparisonDocument_->comparison() : nullptr;
}

void TavWindowController::addComparisonBar()
{
    comparisonExport_ = new ComparisonExport(*window_, *comparisonDocument_);
    comparisonBar_ = new ComparisonBar(*comparisonDocument_);
    static_cast<QBoxLayout *>(window_->centralWidget()->layout())->addWidget(comparisonBar_);
    connect(comparisonBar_, &ComparisonBar::filterChanged, this,
            &TavWindowController::showComparison);
    connect(comparisonBar_, &ComparisonBar::nextRequested, this,
            &TavWindowController::goToNextDifference);
    connect(comparisonBar_, &ComparisonBar::previousRequested, this,
            &TavWindowController::goToPreviousDifference);
    showComparison();
}

void TavWindowController::exportComparison()
{
    comparisonExport_->exportComparison();
}

void TavWindowController::showComparison()
{
    refreshDisplay();
    if (comparisonBar_->showsOnlyDifferences() &&
        comparison()->comparison().counts().differences() <= maxOpened)
        views_->expandAll();
}

bool TavWindowController::isDifferenceShown(const TavRegistryEntry &entry) const
{
    return !comparisonBar_ || !comparisonBar_->showsOnlyDifferences() ||
           comparison()->differenceOf(entry).kind != DifferenceKind::Same ||
           comparison()->differencesBelow(entry, registryPlane()) > 0;
}

void TavWindowController::goToNextDifference()
{
    goToDifference(DifferenceSteps(*comparison()).next(selectedEntry(), registryPlane()));
}

void TavWindowController::goToPreviousDifference()
{
    goToDifference(DifferenceSteps(*comparison()).previous(selectedEntry(), registryPlane()));
}

void TavWindowController::goToDifference(const Path &path)
{
    if (path)
        goToEntryPath(path, true, true);
    else
        SystemBeep::beep();
}
