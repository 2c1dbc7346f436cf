// SPDX-License-Identifier: Apache-2.0
#include "model/PropertyTree.h"

#include "model/TavRegistryProperty.h"

PropertyTree::PropertyTree(const PropertyClass &nodeClass, std::weak_ptr<TavRegistryEntry> entry,
                           QDateTime dateRead)
    : nodeClass_(nodeClass)
    , entry_(std::move(entry))
    , dateRead_(std::move(dateRead))
{}

PropertyTree::~PropertyTree()
{
    for (const Block &block : blocks_) {
        for (std::size_t i = 0; i < block.count; ++i)
            reinterpret_cast<TavRegistryProperty *>(block.storage.get() + i * nodeClass_.size)
                ->~TavRegistryProperty();
    }
}

TavRegistryProperty *PropertyTree::addNodes(std::size_t count)
{
    if (count == 0)
        return nullptr;
    auto storage = std::make_unique_for_overwrite<std::byte[]>(count * nodeClass_.size);
    auto *first = reinterpret_cast<TavRegistryProperty *>(storage.get());
    blocks_.push_back({std::move(storage), 0});
    Block &block = blocks_.back();
    for (; block.count < count; ++block.count)
        nodeClass_.construct(block.storage.get() + block.count * nodeClass_.size, *this);
    return first;
}

void PropertyTree::keep(std::shared_ptr<PropertyTree> other)
{
    if (other.get() != this && (kept_.empty() || kept_.back() != other))
        kept_.push_back(std::move(other));
}
