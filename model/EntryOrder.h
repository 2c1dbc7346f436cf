// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>
#include <span>
#include <vector>

class TavRegistryEntry;

// An entry of a store and all below it in one plane, each once and after those below it. Valid
// while EntryList::changes() stays the same; worth keeping, since making it is slow.
class EntryOrder
{
public:
    EntryOrder(TavRegistryEntry &top, const QString &plane);

    const QString &plane() const { return plane_; }
    TavRegistryEntry &top() const { return *steps_.back().entry; }
    std::size_t size() const { return steps_.size(); }
    TavRegistryEntry &entry(std::size_t position) const { return *steps_[position].entry; }
    // The positions of its children, except one that is also above it.
    std::span<const quint32> children(std::size_t position) const
    {
        const std::size_t start = position == 0 ? 0 : steps_[position - 1].childrenEnd;
        return std::span(children_).subspan(start, steps_[position].childrenEnd - start);
    }

private:
    struct Step
    {
        TavRegistryEntry *entry;
        std::size_t childrenEnd; // in children_
    };

    QString plane_;
    std::vector<Step> steps_;
    std::vector<quint32> children_;
};
