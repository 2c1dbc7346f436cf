// SPDX-License-Identifier: Apache-2.0
// The columns.
#include "explorer/ExplorerContext.h"
#include "explorer/columns/TavBrowserDelegate.h"
#include "explorer/columns/TavRegistryBrowserCell.h"
#include "explorer/tree/TavRegistryOutlineView.h"
#include "explorer/views/ExplorerViews.h"
#include "platform/desktop/SplitViewAutosave.h"
#include "platform/host/SystemBeep.h"
#include "platform/preferences/PreferenceKeys.h"
#include "platform/widgets/ColumnBrowser.h"

void ExplorerViews::setUpBrowser()
{
    registryBrowser_->setDelegate(*browserDelegate_);
    registryBrowser_->setCellClass([] { return std::make_unique<TavRegistryBrowserCell>(); });
    registryBrowser_->setColumnsAutosaveName(PreferenceKeys::browserColumns.toString());
    connect(registryBrowser_, &ColumnBrowser::selectionChosen, this,
            [this] { Q_EMIT selectionChanged(pathSelectedInBrowser()); });
    connect(registryBrowser_, &ColumnBrowser::contextMenuRequested, this,
            &ExplorerViews::contextMenuRequested);
}

ExplorerViews::Path ExplorerViews::pathSelectedInBrowser() const
{
    TavRegistryEntryPath path(context_.registryPlane());
    for (int column = 0; column <= registryBrowser_->lastColumn(); ++column) {
        const auto *const cell =
            static_cast<const TavRegistryBrowserCell *>(registryBrowser_->selectedCell(column));
        if (!cell || !cell->state)
            break;
        path.appendRegistryEntry(cell->representedObject());
    }
    return path;
}

TavRegistryEntryPath ExplorerViews::selectInBrowser(const TavRegistryEntryPath &path,
                                                    bool scrollToVisible)
{
    const ColumnBrowser::Scrolling scrolling = registryBrowser_->scrolling();
    const auto length = static_cast<int>(path.length());
    registryBrowser_->reloadColumn(0);
    int column = 0;
    for (; column < length && column <= registryBrowser_->lastColumn(); ++column) {
        const auto &entry = path.registryEntryAtIndex(static_cast<std::size_t>(column));
        const int row = browserDelegate_->rowOfEntry(entry->entryTag(), column);
        if (row < 0)
            break;
        registryBrowser_->selectRow(row, column); // and loads the next column
        registryBrowser_->selectedCell(column)->state = true;
    }
    if (!scrollToVisible)
        registryBrowser_->setScrolling(scrolling);
    else
        scrollBrowserToPath(column, column == length);
    return path.subpathOfLength(static_cast<std::size_t>(column));
}

void ExplorerViews::scrollBrowserToPath(int selectedColumns, bool isWholePath)
{
    for (int column = 0; column < selectedColumns; ++column)
        registryBrowser_->scrollRowToVisible(registryBrowser_->selectedRow(column), column);
    registryBrowser_->scrollColumnToVisible(registryBrowser_->lastColumn());
    registryBrowser_->scrollColumnToVisible(selectedColumns - 1);
    if (!isWholePath)
        return;
    // Deliberate: the row to show is counted in the column before.
    registryBrowser_->scrollRowToVisible(registryBrowser_->numberOfRows(selectedColumns - 1),
                                         selectedColumns);
}

void ExplorerViews::selectSiblingInBrowser(int step)
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

void ExplorerViews::scrollToSelection()
{
    if (!browserIsVisible()) {
        registryOutlineView_->scrollToSelection();
        return;
    }
    const int column = registryBrowser_->selectedColumn();
    if (column >= 0) {
        registryBrowser_->scrollColumnToVisible(column);
        registryBrowser_->scrollColumnToVisible(column - 1);
        registryBrowser_->scrollRowToVisible(registryBrowser_->selectedRow(column), column);
    }
}
