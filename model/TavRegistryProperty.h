// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/PropertyRecord.h"
#include "model/PropertyTree.h"

#include <QVarLengthArray>
#include <QVariantList>
#include <span>

class TavRegistryProperty;

// Keeps the node's whole tree.
using PropertyRef = std::shared_ptr<TavRegistryProperty>;

// A node of an entry's property tree: the table itself, a key of a dictionary, an element of an
// array or a member of a set. A tree is built as a whole from one value; reading does not change
// it. Main thread only.
class TavRegistryProperty
{
public:
    using Type = RegistryValue::Type;

    explicit TavRegistryProperty(PropertyTree &tree);
    virtual ~TavRegistryProperty();
    TavRegistryProperty(const TavRegistryProperty &) = delete;
    TavRegistryProperty &operator=(const TavRegistryProperty &) = delete;

    static const PropertyClass &staticPropertyClass();
    virtual const PropertyClass &propertyClass() const { return staticPropertyClass(); }
    static constexpr int classVersion = 2;

    // Builds the tree of a value from nodes of the given class; null for no value. Null date: now.
    // Null name: a node without a key. Keeps the parent's tree. Deliberate: the index is not
    // stored; every node without a key has index 0.
    static PropertyRef create(const PropertyClass &nodeClass,
                              const std::shared_ptr<TavRegistryEntry> &entry, const QDateTime &date,
                              TavRegistryProperty *parent, const QString &name, quint32 index,
                              const RegistryValue &value);

    // Builds the tree from a list of nodes: parents before children, siblings consecutive.
    static PropertyRef restore(const PropertyClass &nodeClass,
                               const std::shared_ptr<TavRegistryEntry> &entry,
                               std::span<const PropertyRecord> nodes);

    PropertyRef ref();
    std::shared_ptr<TavRegistryEntry> registryEntry() const;
    QDateTime dateRead() const;
    void noteRead(const QDateTime &date); // for the whole tree: it is unchanged
    bool hasClass(const PropertyClass &nodeClass) const;

    RegistryState registryState() const { return static_cast<RegistryState>(state_); }
    void setRegistryState(RegistryState state) { state_ = static_cast<quint8>(state); }
    void setRegistryStateRecursive(RegistryState state);
    void resetRegistryState(); // to unchanged, except terminated nodes
    void clearIsNew();
    void removeDeletedChildren();

    QString name() const; // null for the root
    bool hasName() const { return flags_ & HasName; }
    quint32 index() const { return 0; }
    Type valueType() const { return valueType_; } // of the value it was built from
    RegistryValue value() const;                  // none for a collection
    TavRegistryProperty *parent() const { return parent_; }
    bool isCollection() const { return flags_ & Collection; }

    // Includes terminated children.
    qsizetype numberOfChildren() const;
    std::vector<TavRegistryProperty *> children() const;
    TavRegistryProperty *childAtIndex(qsizetype index) const;
    TavRegistryProperty *childWithName(const QString &name) const;

    // For searching, without reference counts: the key, and the value of a string.
    QStringView nameView() const { return {ident_.data(), ident_.size()}; }
    QStringView stringView() const { return isCollection() ? QStringView() : value_.stringView(); }
    // Whether any node below satisfies the predicate. Skips the contents of sets.
    template<class Predicate>
    bool anyBelow(Predicate predicate) const;

    QString propertyPath() const;      // "/", "//Key", "//Key/Member", "//Key[0]"
    QVariantList keyIndexPath() const; // strings, and numbers for elements of arrays

    // Marks differences from the older tree's node at the same place; returns whether there are
    // any.
    bool noteChangesFromProperty(TavRegistryProperty &older);

    bool isEqual(const TavRegistryProperty &other) const;
    int compareByName(const TavRegistryProperty &other) const;
    int compareByType(const TavRegistryProperty &other) const;
    int compareByValue(const TavRegistryProperty &other) const;

    // A copy of this node in its own tree, with the same children and unset value type.
    PropertyRef copy();

protected:
    // The stored value without a copy; none for a collection.
    const RegistryValue &contents() const;

private:
    enum Flag : quint8 { Collection = 1, HasName = 2 };
    using ChildList = std::vector<TavRegistryProperty *>;

    // Children are one block until one is added or removed, then a list.
    struct Children
    {
        union
        {
            TavRegistryProperty *first;
            ChildList *list;
        };
        quint32 count;
        bool isListed;
    };

    void fetchText() const
    {
        const QStringView text = stringView();
        __builtin_prefetch(text.utf16());
        __builtin_prefetch(text.utf16() + text.size());
    }
    static int typeRank(Type type);
    Type storedType() const;
    void openCollection(TavRegistryProperty *&nextFree);
    ChildList presentChildren() const;
    void setName(CompactString name);
    TavRegistryProperty *child(std::size_t index) const
    {
        return children_.isListed ? (*children_.list)[index] : tree_->at(children_.first, index);
    }
    ChildList &listChildren();
    void appendTerminatedCopy(TavRegistryProperty &older);
    bool noteDictionaryChanges(TavRegistryProperty &older);
    bool noteArrayChanges(TavRegistryProperty &older);
    bool noteSetChanges(TavRegistryProperty &older);
    template<class Action>
    void forSubtree(Action action);

    PropertyTree *tree_;
    TavRegistryProperty *parent_ = nullptr;
    union
    {
        RegistryValue value_;
        Children children_;
    };
    [[no_unique_address]] CompactString ident_;
    quint8 state_ = RegistryStateNew;
    quint8 flags_ = 0;
    Type valueType_ = Type::None;
};

template<class Predicate>
bool TavRegistryProperty::anyBelow(Predicate predicate) const
{
    QVarLengthArray<const TavRegistryProperty *, 32> pending;
    if (isCollection() && valueType_ != Type::Set)
        pending.append(this);
    while (!pending.isEmpty()) {
        const TavRegistryProperty *const node = pending.last();
        pending.removeLast();
        // Prefetch: texts are scattered in memory.
        for (std::size_t i = 0; i < node->children_.count; ++i)
            node->child(i)->fetchText();
        for (std::size_t i = 0; i < node->children_.count; ++i) {
            const TavRegistryProperty *const below = node->child(i);
            if (predicate(*below))
                return true;
            if (below->isCollection() && below->valueType_ != Type::Set)
                pending.append(below);
        }
    }
    return false;
}

static_assert(sizeof(TavRegistryProperty) <= 56, "there are millions of these");
