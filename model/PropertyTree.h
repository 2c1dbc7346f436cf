// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/PropertyClass.h"

#include <QDateTime>
#include <memory>
#include <vector>

class RegistryValue;
class TavRegistryEntry;

// Owns the nodes of one property tree, and holds the entry and the time of reading that they share.
// Nodes live as long as their tree; hold a PropertyRef to keep one.
class PropertyTree : public std::enable_shared_from_this<PropertyTree>
{
public:
    PropertyTree(const PropertyClass &nodeClass, std::weak_ptr<TavRegistryEntry> entry,
                 QDateTime dateRead);
    ~PropertyTree();
    PropertyTree(const PropertyTree &) = delete;
    PropertyTree &operator=(const PropertyTree &) = delete;

    const PropertyClass &nodeClass() const { return nodeClass_; }
    std::shared_ptr<TavRegistryEntry> entry() const { return entry_.lock(); }
    const QDateTime &dateRead() const { return dateRead_; }
    void setDateRead(const QDateTime &date) { dateRead_ = date; }

    // Makes consecutive nodes, nodeClass().size bytes apart.
    TavRegistryProperty *addNodes(std::size_t count);
    TavRegistryProperty *at(TavRegistryProperty *first, std::size_t index) const
    {
        return reinterpret_cast<TavRegistryProperty *>(reinterpret_cast<std::byte *>(first) +
                                                       index * nodeClass_.size);
    }
    // Keeps alive another tree that this one points into.
    void keep(std::shared_ptr<PropertyTree> other);

private:
    struct Block
    {
        std::unique_ptr<std::byte[]> storage;
        std::size_t count;
    };

    const PropertyClass &nodeClass_;
    std::weak_ptr<TavRegistryEntry> entry_;
    QDateTime dateRead_;
    std::vector<Block> blocks_;
    std::vector<std::shared_ptr<PropertyTree>> kept_;
};
