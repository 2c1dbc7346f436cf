#pragma once

#include "model/TavRegistryProperty.h"

#include <QHash>

// The property nodes that are to be shown open. They are told apart by identity and dropped when
// their tree goes.
class ExpandedItems
{
public:
    bool contains(const TavRegistryProperty &item) const;
    void insert(TavRegistryProperty &item);
    void remove(const TavRegistryProperty &item) { items_.remove(&item); }
    void removeTerminatedItems();
    // Marks the nodes of a tree that are at the places of marked ones in its predecessor.
    void carryOver(TavRegistryProperty &older, TavRegistryProperty &newer);

private:
    void removeExpired();

    QHash<const TavRegistryProperty *, std::weak_ptr<TavRegistryProperty>> items_;
};
