// SPDX-License-Identifier: Apache-2.0
#include "explorer/columns/TavBrowserDelegate.h"

#include "display/views/TavFormatController.h"
#include "explorer/EntryTextStyle.h"
#include "explorer/ExplorerContext.h"
#include "explorer/columns/TavRegistryBrowserCell.h"
#include "platform/widgets/ColumnBrowser.h"
#include "store/TavDataStore.h"

std::vector<EntryRef> TavBrowserDelegate::entriesOfColumn(const ColumnBrowser &browser,
                                                          int column) const
{
    if (column == 0) {
        TavRegistryEntry *const root = context_.dataStore()->registryRoot();
        return root && !context_.hidesEverything() ? std::vector<EntryRef>{root->shared_from_this()}
                                                   : std::vector<EntryRef>();
    }
    const auto *const parent =
        static_cast<const TavRegistryBrowserCell *>(browser.selectedCell(column - 1));
    std::vector<EntryRef> entries;
    if (!parent || !parent->representedObject())
        return entries;
    for (TavRegistryEntry *entry : context_.filterRegistryEntries(
             parent->representedObject()->childrenInPlane(context_.registryPlane())))
        entries.push_back(entry->shared_from_this());
    return entries;
}

int TavBrowserDelegate::numberOfRowsInColumn(ColumnBrowser &browser, int column)
{
    const auto index = static_cast<std::size_t>(column);
    entries_.resize(index + 1);
    entries_[index] = entriesOfColumn(browser, column);
    return static_cast<int>(entries_[index].size());
}

bool TavBrowserDelegate::isLeaf(const TavRegistryEntry &entry) const
{
    const auto &children = entry.childrenInPlane(context_.registryPlane());
    return std::none_of(children.begin(), children.end(), [this](const TavRegistryEntry *child) {
        return context_.passesFilter(*child);
    });
}

void TavBrowserDelegate::willDisplayCell(ColumnBrowser &, ColumnBrowserCell &cell, int row,
                                         int column)
{
    const auto index = static_cast<std::size_t>(column);
    if (row < 0 || index >= entries_.size() ||
        static_cast<std::size_t>(row) >= entries_[index].size()) {
        cell.text = QStringLiteral("invalid!");
        return;
    }
    const EntryRef &entry = entries_[index][static_cast<std::size_t>(row)];
    static_cast<TavRegistryBrowserCell &>(cell).setRepresentedObject(entry);
    cell.text = entry->nameAtLocationInPlane(context_.registryPlane());
    const auto &attributes = TavFormatController::textAttributesForRegistryState(
        entry->registryState(), context_.findStateForRegistryEntry(*entry),
        entry->isRegistryRoot());
    cell.font = EntryTextStyle::font(attributes);
    cell.color = context_.colorForEntry(*entry, attributes);
    cell.mark = context_.markForEntry(*entry);
    cell.detail = context_.detailForEntry(*entry).toString();
    cell.accessibleText = context_.accessibleNameForEntry(*entry, cell.text);
    cell.accessibleDescription = context_.warningForEntry(*entry);
    if (cell.toolTip.isNull() || entry->isRegistryRoot())
        cell.toolTip = context_.toolTipForRegistryEntry(*entry);
    cell.isLeaf = isLeaf(*entry);
}

int TavBrowserDelegate::rowOfEntry(quint64 entryTag, int column) const
{
    const auto index = static_cast<std::size_t>(column);
    if (index >= entries_.size())
        return -1;
    const auto &entries = entries_[index];
    const auto found = std::find_if(entries.rbegin(), entries.rend(), [&](const EntryRef &entry) {
        return entry->entryTag() == entryTag;
    });
    return found == entries.rend() ? -1 : static_cast<int>(entries.rend() - found) - 1;
}
