// SPDX-License-Identifier: Apache-2.0
#include "display/PropertyFilter.h"

#include "display/TavPropertyOutlineItem.h"
#include "model/EntryStore.h"
#include "model/TavRegistryEntry.h"

PropertyFilter::PropertyFilter(const QString &text)
    : matcher_(text, Qt::CaseInsensitive)
    , values_(text)
{}

void PropertyFilter::read(const TavRegistryProperty &root)
{
    shown_.clear();
    byKey_.clear();
    const std::shared_ptr<TavRegistryEntry> entry = root.registryEntry();
    const qint32 byteOrder = entry && entry->dataStore() ? entry->dataStore()->byteOrder()
                                                         : EntryStore::ByteOrderUnknown;
    std::vector<const TavRegistryProperty *> pending{&root};
    while (!pending.empty()) {
        const TavRegistryProperty *const collection = pending.back();
        pending.pop_back();
        for (const TavRegistryProperty *child : collection->children()) {
            const bool isByKey = matchesKey(*child);
            if (isByKey)
                byKey_.insert(child);
            if (isByKey || matchesValue(*child, byteOrder))
                showWithAncestors(*child);
            else if (child->isCollection())
                pending.push_back(child);
        }
    }
}

bool PropertyFilter::matchesKey(const TavRegistryProperty &node) const
{
    return node.hasName() && matcher_.indexIn(node.nameView()) >= 0;
}

bool PropertyFilter::matchesValue(const TavRegistryProperty &node, qint32 byteOrder) const
{
    if (node.isCollection())
        return false;
    if (!node.stringView().isNull())
        return matcher_.indexIn(node.stringView()) >= 0;
    const auto *const item = dynamic_cast<const TavPropertyOutlineItem *>(&node);
    return item && values_.matches(node.value(), item->propertyFormat(), byteOrder);
}

void PropertyFilter::showWithAncestors(const TavRegistryProperty &node)
{
    for (const auto *shown = &node; shown && !shown_.contains(shown); shown = shown->parent())
        shown_.insert(shown);
}
