// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "display/EntryTextAttributes.h"
#include "model/TavRegistryEntryPath.h"

class OutlineRowObserver;
class ExplorerContext;

// A node of an entry tree: one entry at one place in a plane. Children are made on first use and
// change only by rereading, so that the user's changes to a node last. The filter is applied when
// children are made or reread.
class TavRegistryOutlineItem
{
public:
    enum Flag : quint32 { Leaf = 1, OnSelectionPath = 2, Expanded = 4, OpenedInPassing = 8 };
    using Children = std::vector<std::unique_ptr<TavRegistryOutlineItem>>;
    using Items = std::vector<TavRegistryOutlineItem *>;
    struct DisplayName
    {
        QString text;
        EntryTextAttributes attributes;
    };
    // Which nodes reread their children: all, or those with another number of children.
    enum class Reread : quint8 { All, Miscounted };

    // The context must outlive the node, as must the parent, which is null for a root.
    TavRegistryOutlineItem(const ExplorerContext &context, TavRegistryOutlineItem *directParent,
                           const QString &plane, EntryRef registryEntry);
    ~TavRegistryOutlineItem();
    TavRegistryOutlineItem(const TavRegistryOutlineItem &) = delete;
    TavRegistryOutlineItem &operator=(const TavRegistryOutlineItem &) = delete;

    TavRegistryOutlineItem *parent() const { return directParent_; }
    const EntryRef &registryEntry() const { return registryEntry_; }
    const QString &plane() const { return plane_; }
    int row() const { return row_; } // among the parent's children; -1 for one that is not shown

    const Children &allChildren();
    Items children();                                // that pass the filter
    int numberOfChildren();                          // that are shown; -1 for none
    bool isExpandable();                             // avoids making children
    TavRegistryOutlineItem *childAtIndex(int index); // null when there is none
    bool hasSiblingsFollowing() const;               // true for a root
    bool hasSiblingFollowingOnSelectionPath() const;
    TavRegistryOutlineItem *nextSibling() const;
    TavRegistryOutlineItem *previousSibling() const;

    // Takes over the entry's children, here and in all nodes below that were made, and filters
    // them again. The observer may be null.
    void rereadChildren(Reread which = Reread::All, OutlineRowObserver *observer = nullptr);
    // How many nodes rereadChildren would change, counted up to the limit.
    int countRereads(Reread which, int limit) const;
    // Whether the entry's number of children has changed.
    bool isMiscounted() const;

    void setOnSelectionPath(bool isOnPath); // this node and all its ancestors
    bool isOnSelectionPath() const { return flags_ & OnSelectionPath; }
    void setExpanded(bool isExpanded) { setFlag(Expanded, isExpanded); }
    bool isExpanded() const { return flags_ & Expanded; }
    // A row that the program opened on the way to another one. It stays open until it is closed.
    void setOpenedInPassing(bool isOpened) { setFlag(OpenedInPassing, isOpened); }
    bool isToBeOpen() const { return flags_ & (Expanded | OpenedInPassing); }

    QString name() { return displayName().text; }
    const DisplayName &displayName();
    TavRegistryEntryPath entryPath() const;
    QString registryPath() const { return entryPath().registryPath(); }

private:
    void setFlag(Flag flag, bool isSet);
    bool isLeaf() const { return flags_ & Leaf; }
    const EntryList::Entries &entryChildren() const;
    QString currentName() const;

    std::size_t shownCount() const { return shown_ ? shown_->size() : allChildren_.size(); }
    TavRegistryOutlineItem *shownChild(std::size_t index) const;
    Items shownChildren() const;
    Items filterRegistryOutlineItems(Items items) const;
    void filterChildren();
    void setShown(Items items);
    void numberRows(std::size_t first);

    void makeChildren();
    Children followEntry();
    bool isToFollow(Reread which) const;
    bool isToBeFilteredAgain() const;
    void rereadOwnChildren(bool follows, OutlineRowObserver *observer);
    void replaceRows(const Items &before, const Items &after, OutlineRowObserver &observer);

    TavRegistryOutlineItem *directParent_;
    Children allChildren_;         // empty until made
    std::unique_ptr<Items> shown_; // null when all are
    DisplayName displayName_;
    TavRegistryOutlineItem *childOnPath_ = nullptr; // to the selection
    quint32 flags_ = Expanded;
    FindState findState_ = FindStateNone;                  // that displayName_ was styled for
    RegistryState registryState_ = RegistryStateUnchanged; // the same
    int row_ = 0;
    const ExplorerContext &context_;
    EntryRef registryEntry_;
    QString plane_;
};
