#pragma once

#include "display/EntryTextAttributes.h"
#include "model/TavRegistryEntryPath.h"

#include <unordered_map>

class TavWindowController;

// A node of an entry tree: one entry at one place in a plane. Children are made when they are first
// asked for, and again only by rereadChildren, so that what the user did to a node lasts.
class TavRegistryOutlineItem
{
public:
    enum Flag : quint32 { Leaf = 1, OnSelectionPath = 2, Expanded = 4 };
    using Children = std::vector<std::unique_ptr<TavRegistryOutlineItem>>;
    struct DisplayName
    {
        QString text;
        EntryTextAttributes attributes;
    };

    // The controller must outlive the node, as must the parent, which is null for a root.
    TavRegistryOutlineItem(const TavWindowController &windowController,
                           TavRegistryOutlineItem *directParent, const QString &plane,
                           EntryRef registryEntry);
    ~TavRegistryOutlineItem();
    TavRegistryOutlineItem(const TavRegistryOutlineItem &) = delete;
    TavRegistryOutlineItem &operator=(const TavRegistryOutlineItem &) = delete;

    TavRegistryOutlineItem *parent() const { return directParent_; }
    const EntryRef &registryEntry() const { return registryEntry_; }
    const QString &plane() const { return plane_; }
    int row() const { return row_; } // among the parent's children
    bool isLeaf() const { return flags_ & Leaf; }

    const Children &allChildren();
    const Children &children() { return allChildren(); }
    // -1 for none. Reads the children anew if the entry has more or fewer of them by now.
    int numberOfChildren();
    TavRegistryOutlineItem *childAtIndex(int index); // null when there is none
    // Follows the entry's present children, here and in all nodes made below.
    void rereadChildren();
    // Whether rereadChildren would change nothing.
    bool isUpToDate() const;

    void setOnSelectionPath(bool isOnPath); // this node and all its ancestors
    bool isOnSelectionPath() const { return flags_ & OnSelectionPath; }
    void setExpanded(bool isExpanded) { setFlag(Expanded, isExpanded); }
    bool isExpanded() const { return flags_ & Expanded; }
    void setExpandedRecursive(bool isExpanded); // this node and all made below

    QString name() { return displayName().text; }
    const DisplayName &displayName();
    TavRegistryEntryPath entryPath() const;
    QString registryPath() const { return entryPath().registryPath(); }

private:
    using ItemsByTag = std::unordered_map<quint64, std::unique_ptr<TavRegistryOutlineItem>>;

    void setFlag(Flag flag, bool isSet);
    void makeChildren(ItemsByTag known = {}); // known ones are kept
    void rereadOwnChildren();
    bool ownChildrenAreUpToDate() const;
    const EntryList::Entries &entryChildren() const;
    QString currentName() const;

    TavRegistryOutlineItem *directParent_;
    Children allChildren_; // empty until made
    DisplayName displayName_;
    quint32 flags_ = Expanded;
    RegistryState registryState_ = RegistryStateUnchanged; // that displayName_ was styled for
    int row_ = 0;
    const TavWindowController &windowController_;
    EntryRef registryEntry_;
    QString plane_;
};
