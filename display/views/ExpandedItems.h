// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/TavRegistryProperty.h"

#include <QHash>

// The expanded property nodes, identified by address and dropped with their tree.
class ExpandedItems
{
public:
    bool contains(const TavRegistryProperty &item) const;
    void insert(TavRegistryProperty &item);
    void remove(const TavRegistryProperty &item) { items_.remove(&item); }
    void removeTerminatedItems();
    // Marks the nodes of a tree at the places that were marked in its predecessor.
    void carryOver(TavRegistryProperty &older, TavRegistryProperty &newer);

private:
    void removeExpired();

    QHash<const TavRegistryProperty *, std::weak_ptr<TavRegistryProperty>> items_;
};
