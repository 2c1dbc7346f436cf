// SPDX-License-Identifier: Apache-2.0
#include "explorer/tree/TavRegistryOutlineItem.h"
#include "explorer/tree/TavRegistryOutlineView.h"
#include "explorer/tree/TavRegistryOutlineViewDataSource.h"

void TavRegistryOutlineView::collapseRowsOutside(const TavRegistryEntryPath &path)
{
    QSet<const TavRegistryEntry *> kept;
    for (const EntryRef &entry : path.registryEntries())
        kept.insert(entry.get());
    // While a layout is pending, closing a row only records it.
    scheduleDelayedItemsLayout();
    std::vector<QModelIndex> pending{model()->index(0, 0)};
    while (!pending.empty()) {
        const QModelIndex row = pending.back();
        pending.pop_back();
        if (!row.isValid() || !isExpanded(row))
            continue;
        TavRegistryOutlineItem *const item = TavRegistryOutlineViewDataSource::item(row);
        if (!kept.contains(item->registryEntry().get())) {
            collapse(row);
            // Deliberate: one command closes many rows, and each of them stays closed.
            item->setExpanded(false);
            continue;
        }
        for (int child = model()->rowCount(row) - 1; child >= 0; --child)
            pending.push_back(model()->index(child, 0, row));
    }
    executeDelayedItemsLayout();
}
