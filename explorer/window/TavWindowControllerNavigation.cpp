// Going from the selection to its neighbours and to where it has been.
#include "explorer/selection/HistoryButtons.h"
#include "explorer/selection/SelectionHistory.h"
#include "explorer/tree/TavRegistryOutlineItem.h"
#include "explorer/tree/TavRegistryOutlineView.h"
#include "explorer/tree/TavRegistryOutlineViewDataSource.h"
#include "explorer/window/TavWindowController.h"
#include "platform/host/SystemBeep.h"
#include "platform/widgets/ColumnBrowser.h"

#include <QComboBox>
#include <QMainWindow>
#include <QScopedValueRollback>

void TavWindowController::connectNavigationControls()
{
    auto *const buttons = new HistoryButtons(*window_);
    connect(buttons, &HistoryButtons::backPressed, this, &TavWindowController::goBack);
    connect(buttons, &HistoryButtons::forwardPressed, this, &TavWindowController::goForward);
    connect(entryPathsButton_, &QComboBox::activated, this, &TavWindowController::pathPopupChanged);
}

void TavWindowController::selectParent()
{
    if (selectedEntryPath_ && selectedEntryPath_->length() >= 2)
        goToEntryPath(selectedEntryPath_->subpathOfLength(selectedEntryPath_->length() - 1), true,
                      true);
}

void TavWindowController::selectChild()
{
    if (!selectedEntryPath_ || !selectedEntry_ ||
        selectedEntry_->childrenInPlane(registryPlane_).empty()) {
        SystemBeep::beep();
        return;
    }
    TavRegistryEntryPath path = *selectedEntryPath_;
    path.appendRegistryEntry(
        selectedEntry_->childrenInPlane(registryPlane_).front()->shared_from_this());
    goToEntryPath(path, true, true);
}

void TavWindowController::selectNextSibling()
{
    if (browserIsVisible()) {
        selectSiblingInBrowser(1);
        return;
    }
    const TavRegistryOutlineItem *const selected = outlineDataSource_->selectedItem();
    if (const TavRegistryOutlineItem *sibling = selected ? selected->nextSibling() : nullptr)
        goToEntryPath(sibling->entryPath(), true, true);
}

void TavWindowController::selectPreviousSibling()
{
    if (browserIsVisible()) {
        selectSiblingInBrowser(-1);
        return;
    }
    const TavRegistryOutlineItem *const selected = outlineDataSource_->selectedItem();
    if (const TavRegistryOutlineItem *sibling = selected ? selected->previousSibling() : nullptr)
        goToEntryPath(sibling->entryPath(), true, true);
}

void TavWindowController::selectSiblingInBrowser(int step)
{
    const int column = registryBrowser_->selectedColumn();
    const int row = registryBrowser_->selectedRow(column) + step;
    if (column < 0 || row < 0 || row >= registryBrowser_->numberOfRows(column)) {
        SystemBeep::beep();
        return;
    }
    registryBrowser_->chooseRow(row, column);
    registryBrowser_->scrollRowToVisible(row, column);
}

void TavWindowController::collapseAroundSelection()
{
    if (!selectedEntryPath_)
        return;
    registryOutlineView_->collapseRowsOutside(*selectedEntryPath_);
    jumpToSelection();
}

void TavWindowController::jumpToSelection()
{
    if (browserIsVisible()) {
        const int column = registryBrowser_->selectedColumn();
        if (column >= 0) {
            registryBrowser_->scrollColumnToVisible(column);
            registryBrowser_->scrollColumnToVisible(column - 1);
            registryBrowser_->scrollRowToVisible(registryBrowser_->selectedRow(column), column);
        }
    } else {
        registryOutlineView_->scrollToSelection();
    }
    scrollToSelectedProperty();
}

void TavWindowController::goBack()
{
    if (!history_->canGoBack()) {
        SystemBeep::beep();
        return;
    }
    goToVisited(history_->goBack());
}

void TavWindowController::goForward()
{
    if (!history_->canGoForward()) {
        SystemBeep::beep();
        return;
    }
    goToVisited(history_->goForward());
}

void TavWindowController::goToVisited(const TavRegistryEntryPath &path)
{
    const QScopedValueRollback revisiting(isRevisiting_, true);
    goToEntryPath(path, true, true);
    validateActions();
}

// There is no sequence of snapshots to go through.
void TavWindowController::goToNextSnapshot()
{
    SystemBeep::beep();
}

void TavWindowController::goToPrevSnapshot()
{
    SystemBeep::beep();
}
