#include "explorer/TavRegistryOutlineItem.h"
#include "explorer/TavWindowController.h"

#include <QCheckBox>

FindState TavWindowController::findStateForRegistryEntry(const TavRegistryEntry &entry) const
{
    if (!foundObjects_)
        return FindStateNone;
    auto *const key = const_cast<TavRegistryEntry *>(&entry);
    if (foundObjects_->contains(key))
        return FindStateMatching;
    const auto parents = parentsOfFoundObjectsInPlanes_.constFind(registryPlane_);
    return parents != parentsOfFoundObjectsInPlanes_.constEnd() && parents->contains(key)
               ? FindStateParentOfMatch
               : FindStateNotMatching;
}

bool TavWindowController::filterFindResults() const
{
    return filteredFindCheckbox_ && filteredFindCheckbox_->isChecked();
}

// Hiding what has terminated hides what a search leaves out as well, whether or not that is asked
// for by itself.
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
