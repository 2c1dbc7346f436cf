// SPDX-License-Identifier: Apache-2.0
#include "explorer/ExplorerContext.h"
#include "explorer/tree/OutlineRowObserver.h"
#include "explorer/tree/TavRegistryOutlineItem.h"

#include <unordered_map>

void TavRegistryOutlineItem::makeChildren()
{
    followEntry();
    filterChildren();
}

// Keeps the nodes whose entry is still a child and returns the others.
TavRegistryOutlineItem::Children TavRegistryOutlineItem::followEntry()
{
    std::unordered_map<quint64, std::unique_ptr<TavRegistryOutlineItem>> known;
    for (auto &item : std::exchange(allChildren_, {})) {
        const quint64 tag = item->registryEntry_->entryTag();
        known.emplace(tag, std::move(item));
    }
    const EntryList::Entries &entries = entryChildren();
    setFlag(Leaf, entries.empty());
    allChildren_.reserve(entries.size());
    for (TavRegistryEntry *entry : entries) {
        auto kept = known.extract(entry->entryTag());
        allChildren_.push_back(kept ? std::move(kept.mapped())
                                    : std::make_unique<TavRegistryOutlineItem>(
                                          context_, this, plane_, entry->shared_from_this()));
    }
    Children gone;
    for (auto &[tag, item] : known) {
        if (childOnPath_ == item.get())
            childOnPath_ = nullptr;
        gone.push_back(std::move(item));
    }
    return gone;
}

TavRegistryOutlineItem::Items TavRegistryOutlineItem::shownChildren() const
{
    if (shown_)
        return *shown_;
    Items items;
    items.reserve(allChildren_.size());
    for (const auto &child : allChildren_)
        items.push_back(child.get());
    return items;
}

TavRegistryOutlineItem::Items TavRegistryOutlineItem::filterRegistryOutlineItems(Items items) const
{
    std::erase_if(items, [this](const TavRegistryOutlineItem *item) {
        return !context_.passesFilter(*item->registryEntry_);
    });
    return items;
}

void TavRegistryOutlineItem::filterChildren()
{
    shown_.reset();
    if (context_.isFiltering())
        setShown(filterRegistryOutlineItems(shownChildren()));
    else
        numberRows(0);
}

void TavRegistryOutlineItem::setShown(Items items)
{
    for (const auto &child : allChildren_)
        child->row_ = -1;
    shown_ =
        items.size() == allChildren_.size() ? nullptr : std::make_unique<Items>(std::move(items));
    numberRows(0);
}

void TavRegistryOutlineItem::numberRows(std::size_t first)
{
    for (std::size_t i = first; i < shownCount(); ++i)
        shownChild(i)->row_ = static_cast<int>(i);
}

bool TavRegistryOutlineItem::isToFollow(Reread which) const
{
    if (which == Reread::Miscounted || allChildren_.empty())
        return isMiscounted();
    const EntryList::Entries &entries = entryChildren();
    return !std::equal(allChildren_.begin(), allChildren_.end(), entries.begin(), entries.end(),
                       [](const auto &item, const TavRegistryEntry *entry) {
                           return item->registryEntry_->entryTag() == entry->entryTag();
                       });
}

// Children that are not made yet are counted when they are made.
bool TavRegistryOutlineItem::isMiscounted() const
{
    const EntryList::Entries &entries = entryChildren();
    return allChildren_.empty() ? entries.empty() != isLeaf()
                                : entries.size() != allChildren_.size();
}

bool TavRegistryOutlineItem::isToBeFilteredAgain() const
{
    if (!context_.isFiltering())
        return shown_ != nullptr;
    return std::any_of(allChildren_.begin(), allChildren_.end(), [&](const auto &child) {
        return context_.passesFilter(*child->registryEntry_) != (child->row_ >= 0);
    });
}

int TavRegistryOutlineItem::countRereads(Reread which, int limit) const
{
    int count = 0;
    std::vector<const TavRegistryOutlineItem *> pending{this};
    while (!pending.empty() && count < limit) {
        const TavRegistryOutlineItem *const item = pending.back();
        pending.pop_back();
        count += item->isToFollow(which) || item->isToBeFilteredAgain();
        for (const auto &child : item->allChildren_)
            pending.push_back(child.get());
    }
    return count;
}

void TavRegistryOutlineItem::rereadChildren(Reread which, OutlineRowObserver *observer)
{
    struct Pending
    {
        TavRegistryOutlineItem *item;
        Reread which;
        OutlineRowObserver *observer;
    };
    std::vector<Pending> pending{{this, which, observer}};
    while (!pending.empty()) {
        const auto [item, itsReread, itsObserver] = pending.back();
        pending.pop_back();
        const bool follows = item->isToFollow(itsReread);
        if (follows || item->isToBeFilteredAgain())
            item->rereadOwnChildren(follows, itsObserver);
        // Everything below a miscounted node is reread. What is below a hidden node is invisible.
        for (const auto &child : item->allChildren_)
            pending.push_back({child.get(), follows ? Reread::All : itsReread,
                               child->row_ < 0 ? nullptr : itsObserver});
    }
}

void TavRegistryOutlineItem::rereadOwnChildren(bool follows, OutlineRowObserver *observer)
{
    if (allChildren_.empty() && !observer) {
        setFlag(Leaf, entryChildren().empty()); // children are made on demand
        return;
    }
    const Items before = shownChildren();
    const Children gone = follows ? followEntry() : Children();
    filterChildren();
    if (observer)
        replaceRows(before, shownChildren(), *observer);
}

// Replaces the rows between those that stay at both ends; a row may be removed and inserted again.
// The observer sees each step in shown_.
void TavRegistryOutlineItem::replaceRows(const Items &before, const Items &after,
                                         OutlineRowObserver &observer)
{
    const auto ends = std::mismatch(before.begin(), before.end(), after.begin(), after.end());
    const auto first = ends.first - before.begin();
    const auto tails = std::mismatch(before.rbegin(), std::make_reverse_iterator(ends.first),
                                     after.rbegin(), std::make_reverse_iterator(ends.second));
    const auto lastGoing = before.size() - static_cast<std::size_t>(tails.first - before.rbegin());
    const auto lastComing = after.size() - static_cast<std::size_t>(tails.second - after.rbegin());
    const auto firstRow = static_cast<int>(first);
    shown_ = std::make_unique<Items>(before);
    numberRows(0);
    if (static_cast<std::size_t>(first) < lastGoing) {
        observer.willRemoveRows(*this, firstRow, static_cast<int>(lastGoing) - 1);
        shown_->erase(shown_->begin() + first,
                      shown_->begin() + static_cast<Items::difference_type>(lastGoing));
        numberRows(static_cast<std::size_t>(first));
        observer.didRemoveRows();
    }
    if (static_cast<std::size_t>(first) < lastComing) {
        observer.willInsertRows(*this, firstRow, static_cast<int>(lastComing) - 1);
        setShown(after);
        observer.didInsertRows(*this, firstRow, static_cast<int>(lastComing) - 1);
    } else {
        setShown(after);
    }
}
