// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/TavRegistryEntry.h"
#include "platform/widgets/ColumnBrowserDelegate.h"

class ExplorerContext;

// Shows a plane in the column browser: in each column the children of the entry that is selected in
// the one before it.
class TavBrowserDelegate : public ColumnBrowserDelegate
{
public:
    // The context must outlive this.
    explicit TavBrowserDelegate(const ExplorerContext &context)
        : context_(context)
    {}

    int numberOfRowsInColumn(ColumnBrowser &browser, int column) override;
    void willDisplayCell(ColumnBrowser &browser, ColumnBrowserCell &cell, int row,
                         int column) override;
    // Of an entry with this tag, the last one; -1 when the column has none.
    int rowOfEntry(quint64 entryTag, int column) const;

private:
    std::vector<EntryRef> entriesOfColumn(const ColumnBrowser &browser, int column) const;
    bool isLeaf(const TavRegistryEntry &entry) const;

    const ExplorerContext &context_;
    std::vector<std::vector<EntryRef>> entries_; // by column, as it was loaded
};
