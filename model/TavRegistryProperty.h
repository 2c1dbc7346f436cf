#pragma once

#include "model/PropertyFacts.h"
#include "model/PropertyTree.h"

#include <QVarLengthArray>
#include <QVariantList>
#include <span>

class TavRegistryProperty;

// Keeps the node's whole tree.
using PropertyRef = std::shared_ptr<TavRegistryProperty>;

// A node of an entry's property tree: the table itself, a key of a dictionary, an element of an
// array or a member of a set. A tree is built whole from one value and not changed by reading it.
// Main thread only.
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

    // Builds the tree of a value, of nodes of the given class; none for no value. A null date means
    // now. A null name makes a node without a key. The index is not kept: every node without a key
    // has index 0. The parent's tree is kept.
    static PropertyRef create(const PropertyClass &nodeClass,
                              const std::shared_ptr<TavRegistryEntry> &entry, const QDateTime &date,
                              TavRegistryProperty *parent, const QString &name, quint32 index,
                              const RegistryValue &value);

    // Builds the tree of nodes that lie each before its children, which lie one after another.
    static PropertyRef restore(const PropertyClass &nodeClass,
                               const std::shared_ptr<TavRegistryEntry> &entry,
                               std::span<const PropertyFacts> nodes);

    PropertyRef ref();
    std::shared_ptr<TavRegistryEntry> registryEntry() const;
    QDateTime dateRead() const;
    void noteRead(const QDateTime &date); // the whole tree: nothing in it has changed since
    bool hasClass(const PropertyClass &nodeClass) const;

    RegistryState registryState() const { return static_cast<RegistryState>(state_); }
    void setRegistryState(RegistryState state) { state_ = static_cast<quint8>(state); }
    void setRegistryStateRecursive(RegistryState state);
    void resetRegistryState(); // to unchanged, but for what is terminated
    void clearIsNew();
    void removeDeletedChildren();

    QString name() const; // null for the root
    bool hasName() const { return flags_ & HasName; }
    quint32 index() const { return 0; }
    Type valueType() const { return valueType_; } // of the value that it was built from
    RegistryValue value() const;                  // none for a collection
    TavRegistryProperty *parent() const { return parent_; }
    bool isCollection() const { return flags_ & Collection; }

    // Terminated children count and are listed too. None for no collection.
    qsizetype numberOfChildren() const;
    std::vector<TavRegistryProperty *> children() const;
    TavRegistryProperty *childAtIndex(qsizetype index) const;
    TavRegistryProperty *childWithName(const QString &name) const;

    // For searching, without sharing what is looked at: the key, and the value of a string.
    QStringView nameView() const { return {ident_.data(), ident_.size()}; }
    QStringView stringView() const { return isCollection() ? QStringView() : value_.stringView(); }
    // Whether any node below satisfies the predicate. What is in sets is not looked at.
    template<class Predicate>
    bool anyBelow(Predicate predicate) const;

    QString propertyPath() const;      // "/", "//Key", "//Key/Member", "//Key[0]"
    QVariantList keyIndexPath() const; // strings, and numbers for elements of arrays

    // Marks what differs from the older tree's node at the same place; whether anything does.
    bool noteChangesFromProperty(TavRegistryProperty &older);

    bool isEqual(const TavRegistryProperty &other) const;
    int compareByName(const TavRegistryProperty &other) const;
    int compareByType(const TavRegistryProperty &other) const;
    int compareByValue(const TavRegistryProperty &other) const;

    // A node like this one in a tree of its own, holding the same children, of unset value type.
    PropertyRef copy();

protected:
    // The stored value, or none for a collection; without a copy.
    const RegistryValue &contents() const;

private:
    enum Flag : quint8 { Collection = 1, HasName = 2 };
    using ChildList = std::vector<TavRegistryProperty *>;

    // Children lie in one block until one is added or removed; from then on they are listed.
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
        // Texts lie anywhere in memory: asking for all of them first saves waiting for each.
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
