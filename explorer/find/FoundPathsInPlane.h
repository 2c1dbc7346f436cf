// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/TavRegistryEntryPath.h"

// Every path in one plane of the entries that a search found, in order. A path is stored as its
// last step, because there may be many more paths than entries. Keeps the entries.
class FoundPathsInPlane
{
public:
    FoundPathsInPlane(const QString &plane, const std::vector<EntryRef> &found);

    std::size_t size() const { return found_.size(); }
    bool isEmpty() const { return found_.empty(); }
    TavRegistryEntryPath at(std::size_t index) const { return pathTo(found_[index]); }
    // How many paths come before the path, which is of this plane, or are equal to it.
    std::size_t countBefore(const TavRegistryEntryPath &path) const;
    std::size_t countNotAfter(const TavRegistryEntryPath &path) const;

private:
    class Builder;
    struct Position // of an entry on the way to what was found
    {
        TavRegistryEntry *entry;
        std::size_t parent;
    };

    TavRegistryEntryPath pathTo(std::size_t position) const;
    template<class IsBefore>
    std::size_t countWhile(IsBefore isBefore) const;

    QString plane_;
    std::vector<Position> positions_;
    std::vector<std::size_t> found_; // positions
    std::vector<EntryRef> kept_;
};
