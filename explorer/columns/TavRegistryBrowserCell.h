// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/TavRegistryEntry.h"
#include "platform/widgets/ColumnBrowserCell.h"

class ColumnBrowser;

// A row of the column browser, which shows an entry.
class TavRegistryBrowserCell : public ColumnBrowserCell
{
public:
    const EntryRef &representedObject() const { return representedObject_; }
    void setRepresentedObject(EntryRef entry) { representedObject_ = std::move(entry); }
    ColumnBrowser *browser() const; // that shows the cell

private:
    EntryRef representedObject_;
};
