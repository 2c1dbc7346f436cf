#include "explorer/TavRegistryOutlineItem.h"

#include "display/views/TavFormatController.h"
#include "explorer/TavWindowController.h"

TavRegistryOutlineItem::TavRegistryOutlineItem(const TavWindowController &windowController,
                                               TavRegistryOutlineItem *directParent,
                                               const QString &plane, EntryRef registryEntry)
    : directParent_(directParent)
    , windowController_(windowController)
    , registryEntry_(std::move(registryEntry))
    , plane_(plane)
{
    setFlag(Leaf, entryChildren().empty());
}

// Iterative, for a tree may be deeper than the stack.
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

void TavRegistryOutlineItem::makeChildren(ItemsByTag known)
{
    const EntryList::Entries &entries = entryChildren();
    setFlag(Leaf, entries.empty());
    allChildren_.reserve(entries.size());
    for (TavRegistryEntry *entry : entries) {
        auto kept = known.extract(entry->entryTag());
        allChildren_.push_back(
            kept ? std::move(kept.mapped())
                 : std::make_unique<TavRegistryOutlineItem>(windowController_, this, plane_,
                                                            entry->shared_from_this()));
        allChildren_.back()->row_ = static_cast<int>(allChildren_.size()) - 1;
    }
}

int TavRegistryOutlineItem::numberOfChildren()
{
    if (isLeaf())
        return -1;
    if (!allChildren_.empty() && allChildren_.size() != entryChildren().size())
        rereadChildren();
    const auto count = static_cast<int>(children().size());
    return count == 0 ? -1 : count;
}

TavRegistryOutlineItem *TavRegistryOutlineItem::childAtIndex(int index)
{
    const Children &shown = children();
    return index >= 0 && index < static_cast<int>(shown.size())
               ? shown[static_cast<std::size_t>(index)].get()
               : nullptr;
}

void TavRegistryOutlineItem::rereadChildren()
{
    std::vector<TavRegistryOutlineItem *> pending{this};
    while (!pending.empty()) {
        TavRegistryOutlineItem *const item = pending.back();
        pending.pop_back();
        item->rereadOwnChildren();
        for (const auto &child : item->allChildren_)
            pending.push_back(child.get());
    }
}

void TavRegistryOutlineItem::rereadOwnChildren()
{
    if (ownChildrenAreUpToDate())
        return;
    if (allChildren_.empty()) {
        setFlag(Leaf, entryChildren().empty());
        return;
    }
    ItemsByTag known;
    for (auto &item : std::exchange(allChildren_, {})) {
        const quint64 tag = item->registryEntry_->entryTag();
        known.emplace(tag, std::move(item));
    }
    makeChildren(std::move(known));
}

bool TavRegistryOutlineItem::ownChildrenAreUpToDate() const
{
    const EntryList::Entries &entries = entryChildren();
    if (entries.empty() != isLeaf())
        return false;
    if (allChildren_.empty())
        return true;
    return std::equal(allChildren_.begin(), allChildren_.end(), entries.begin(), entries.end(),
                      [](const auto &item, const TavRegistryEntry *entry) {
                          return item->registryEntry_->entryTag() == entry->entryTag();
                      });
}

bool TavRegistryOutlineItem::isUpToDate() const
{
    std::vector<const TavRegistryOutlineItem *> pending{this};
    while (!pending.empty()) {
        const TavRegistryOutlineItem *const item = pending.back();
        pending.pop_back();
        if (!item->ownChildrenAreUpToDate())
            return false;
        for (const auto &child : item->allChildren_)
            pending.push_back(child.get());
    }
    return true;
}

void TavRegistryOutlineItem::setOnSelectionPath(bool isOnPath)
{
    for (TavRegistryOutlineItem *item = this; item; item = item->directParent_)
        item->setFlag(OnSelectionPath, isOnPath);
}

void TavRegistryOutlineItem::setExpandedRecursive(bool isExpanded)
{
    std::vector<TavRegistryOutlineItem *> pending{this};
    while (!pending.empty()) {
        TavRegistryOutlineItem *const item = pending.back();
        pending.pop_back();
        item->setExpanded(isExpanded);
        for (const auto &child : item->allChildren_)
            pending.push_back(child.get());
    }
}

QString TavRegistryOutlineItem::currentName() const
{
    const QString name = registryEntry_->nameAtLocationInPlane(plane_);
    if (!windowController_.showNumPaths())
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
    const QString name = currentName();
    if (registryState == registryState_ && name == displayName_.text)
        return displayName_;
    registryState_ = registryState;
    displayName_ = {name, TavFormatController::textAttributesForRegistryState(
                              registryState, FindStateNone, registryEntry_->isRegistryRoot())};
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
