// SPDX-License-Identifier: Apache-2.0
#include "model/EntryList.h"

namespace {
constexpr std::size_t longList = 16;
}

bool EntryList::contains(TavRegistryEntry *entry) const
{
    if (entries_.size() < longList)
        return std::find(entries_.begin(), entries_.end(), entry) != entries_.end();
    if (!index_)
        index_ = std::make_unique<QSet<TavRegistryEntry *>>(entries_.begin(), entries_.end());
    return index_->contains(entry);
}

void EntryList::add(TavRegistryEntry *entry)
{
    if (!contains(entry))
        append(entry);
}

void EntryList::append(TavRegistryEntry *entry)
{
    entries_.push_back(entry);
    noteChange();
    if (index_)
        index_->insert(entry);
}

void EntryList::clear()
{
    entries_.clear();
    noteChange();
    index_.reset();
}
