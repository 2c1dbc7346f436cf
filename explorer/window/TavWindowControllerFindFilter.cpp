// What a search leaves to be shown.
#include "explorer/find/TavFindTableViewDataSource.h"
#include "explorer/tree/TavRegistryOutlineItem.h"
#include "explorer/tree/TavRegistryOutlineView.h"
#include "explorer/window/TavWindowController.h"
#include "platform/widgets/ColumnBrowser.h"
#include "platform/widgets/ViewNote.h"

#include <QCheckBox>

bool TavWindowController::filterFindResults() const
{
    return filteredFindCheckbox_->isChecked();
}

bool TavWindowController::hidesEverything() const
{
    return filterFindResults() && foundObjects_ && foundObjects_->isEmpty();
}

// Deliberate: hiding what has terminated hides what a search leaves out as well, whether or not
// that is asked for by itself.
bool TavWindowController::passesFilter(const TavRegistryEntry &entry) const
{
    if (!isFiltering())
        return true;
    return findStateForRegistryEntry(entry) != FindStateNotMatching &&
           (showTerminatedObjects_ || entry.dateTerminated().isNull());
}

EntryList::Entries
TavWindowController::filterRegistryEntries(const EntryList::Entries &entries) const
{
    EntryList::Entries kept;
    std::copy_if(entries.begin(), entries.end(), std::back_inserter(kept),
                 [this](const TavRegistryEntry *entry) { return passesFilter(*entry); });
    return kept;
}

std::vector<TavRegistryOutlineItem *>
TavWindowController::filterRegistryOutlineItems(std::vector<TavRegistryOutlineItem *> items) const
{
    std::erase_if(items, [this](const TavRegistryOutlineItem *item) {
        return !passesFilter(*item->registryEntry());
    });
    return items;
}

void TavWindowController::filteredFindChanged()
{
    const std::optional<TavRegistryEntryPath> selected = selectedEntryPath_;
    registryOutlineView_->reloadData();
    registryBrowser_->reloadColumn(0);
    findDataSource_->reloadData();
    nothingFoundNote_->setVisible(hidesEverything());
    goToEntryPath(selected, true, true);
    validateActions();
}
