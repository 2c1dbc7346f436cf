#include "explorer/columns/TavBrowserDelegate.h"
#include "explorer/columns/TavRegistryBrowserCell.h"
#include "explorer/window/TavWindowController.h"
#include "platform/widgets/ColumnBrowser.h"

void TavWindowController::setUpBrowser()
{
    registryBrowser_->setDelegate(*browserDelegate_);
    registryBrowser_->setCellClass([] { return std::make_unique<TavRegistryBrowserCell>(); });
    registryBrowser_->setColumnsAutosaveName(QStringLiteral("TavRegistryBrowser-Columns"));
    connect(registryBrowser_, &ColumnBrowser::selectionChosen, this,
            &TavWindowController::browserSelectionChanged);
}

void TavWindowController::browserSelectionChanged()
{
    TavRegistryEntryPath path(registryPlane_);
    for (int column = 0; column <= registryBrowser_->lastColumn(); ++column) {
        const auto *const cell =
            static_cast<const TavRegistryBrowserCell *>(registryBrowser_->selectedCell(column));
        if (!cell || !cell->state)
            break;
        path.appendRegistryEntry(cell->representedObject());
    }
    selectEntryPath(path);
}

// The part of the path that was selected.
TavRegistryEntryPath TavWindowController::selectEntryPathInBrowser(const TavRegistryEntryPath &path,
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

void TavWindowController::scrollBrowserToPath(int selectedColumns, bool isWholePath)
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
