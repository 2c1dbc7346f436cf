// SPDX-License-Identifier: Apache-2.0
#include "explorer/tree/TavRegistryOutlineItem.h"

#include "display/views/TavFormatController.h"
#include "explorer/ExplorerContext.h"

TavRegistryOutlineItem::TavRegistryOutlineItem(const ExplorerContext &context,
                                               TavRegistryOutlineItem *directParent,
                                               const QString &plane, EntryRef registryEntry)
    : directParent_(directParent)
    , context_(context)
    , registryEntry_(std::move(registryEntry))
    , plane_(plane)
{
    setFlag(Leaf, entryChildren().empty());
}

// Iterative, because a tree may be deeper than the stack.
TavRegistryOutlineItem::~TavRegistryOutlineItem()
{
    Children going = std::move(allChildren_);
    while (!going.empty()) {
        const auto item = std::move(going.back());
        going.pop_back();
        std::move(item->allChildren_.begin(), item->allChildren_.end(), std::back_inserter(going));
        item->allChildren_.clear();
    }
}

void TavRegistryOutlineItem::setFlag(Flag flag, bool isSet)
{
    flags_ = isSet ? flags_ | flag : flags_ & ~flag;
}

const EntryList::Entries &TavRegistryOutlineItem::entryChildren() const
{
    return registryEntry_->childrenInPlane(plane_);
}

const TavRegistryOutlineItem::Children &TavRegistryOutlineItem::allChildren()
{
    if (allChildren_.empty() && !isLeaf())
        makeChildren();
    return allChildren_;
}

TavRegistryOutlineItem::Items TavRegistryOutlineItem::children()
{
    allChildren();
    return shownChildren();
}

int TavRegistryOutlineItem::numberOfChildren()
{
    allChildren();
    return shownCount() == 0 ? -1 : static_cast<int>(shownCount());
}

bool TavRegistryOutlineItem::isExpandable()
{
    const bool isLazy = allChildren_.empty() && !context_.isFiltering();
    return isLazy ? !isLeaf() : numberOfChildren() > 0;
}

TavRegistryOutlineItem *TavRegistryOutlineItem::childAtIndex(int index)
{
    allChildren();
    return index >= 0 && static_cast<std::size_t>(index) < shownCount()
               ? shownChild(static_cast<std::size_t>(index))
               : nullptr;
}

TavRegistryOutlineItem *TavRegistryOutlineItem::shownChild(std::size_t index) const
{
    return shown_ ? (*shown_)[index] : allChildren_[index].get();
}

bool TavRegistryOutlineItem::hasSiblingsFollowing() const
{
    return !directParent_ || directParent_->shownCount() == 0 ||
           directParent_->shownChild(directParent_->shownCount() - 1) != this;
}

bool TavRegistryOutlineItem::hasSiblingFollowingOnSelectionPath() const
{
    return directParent_ && directParent_->childOnPath_ && row_ >= 0 &&
           directParent_->childOnPath_->row_ > row_;
}

TavRegistryOutlineItem *TavRegistryOutlineItem::nextSibling() const
{
    return directParent_ && row_ >= 0 ? directParent_->childAtIndex(row_ + 1) : nullptr;
}

TavRegistryOutlineItem *TavRegistryOutlineItem::previousSibling() const
{
    return directParent_ ? directParent_->childAtIndex(row_ - 1) : nullptr;
}

void TavRegistryOutlineItem::setOnSelectionPath(bool isOnPath)
{
    for (TavRegistryOutlineItem *item = this; item; item = item->directParent_) {
        item->setFlag(OnSelectionPath, isOnPath);
        if (item->directParent_)
            item->directParent_->childOnPath_ = isOnPath ? item : nullptr;
    }
}

QString TavRegistryOutlineItem::currentName() const
{
    const QString name = registryEntry_->nameAtLocationInPlane(plane_);
    if (!context_.showNumPaths())
        return name;
    const auto counts = registryEntry_->getNumRegistryPaths();
    return counts.paths < 2
               ? name
               : QStringLiteral("%1 (%2/%3)")
                     .arg(name, QString::number(counts.paths), QString::number(counts.planes));
}

const TavRegistryOutlineItem::DisplayName &TavRegistryOutlineItem::displayName()
{
    const RegistryState registryState = registryEntry_->registryState();
    const FindState findState = context_.findStateForRegistryEntry(*registryEntry_);
    const QString name = currentName();
    if (registryState == registryState_ && findState == findState_ && name == displayName_.text &&
        !displayName_.text.isNull())
        return displayName_;
    registryState_ = registryState;
    findState_ = findState;
    displayName_ = {name, TavFormatController::textAttributesForRegistryState(
                              registryState, findState, registryEntry_->isRegistryRoot())};
    return displayName_;
}

TavRegistryEntryPath TavRegistryOutlineItem::entryPath() const
{
    std::vector<EntryRef> entries;
    for (const TavRegistryOutlineItem *item = this; item; item = item->directParent_)
        entries.push_back(item->registryEntry_);
    std::reverse(entries.begin(), entries.end());
    return TavRegistryEntryPath(plane_, std::move(entries));
}
