// SPDX-License-Identifier: Apache-2.0
// Marking changes against the previous property tree.
#include "model/TavRegistryProperty.h"

#include <QHash>
#include <QSet>

bool TavRegistryProperty::noteChangesFromProperty(TavRegistryProperty &older)
{
    state_ = older.state_;
    if (valueType_ == older.valueType_) {
        bool changed = false;
        if (!isCollection())
            changed = !contents().meansTheSameAs(older.contents());
        else if (valueType_ == Type::Dictionary)
            changed = noteDictionaryChanges(older);
        else if (valueType_ == Type::Array)
            changed = noteArrayChanges(older);
        else if (valueType_ == Type::Set)
            changed = noteSetChanges(older);
        if (!changed)
            return false;
    }
    setRegistryState(RegistryStateChanged);
    return true;
}

std::vector<TavRegistryProperty *> TavRegistryProperty::presentChildren() const
{
    ChildList present = children();
    std::erase_if(present, [](const TavRegistryProperty *child) {
        return child->registryState() == RegistryStateTerminated;
    });
    return present;
}

bool TavRegistryProperty::noteDictionaryChanges(TavRegistryProperty &older)
{
    const ChildList newChildren = presentChildren();
    const ChildList oldChildren = older.presentChildren();
    QHash<QString, TavRegistryProperty *> oldByKey;
    for (TavRegistryProperty *old : oldChildren)
        oldByKey.insert(old->name(), old);
    QSet<QString> newKeys;
    bool changed = false;
    for (TavRegistryProperty *node : newChildren) {
        newKeys.insert(node->name());
        if (TavRegistryProperty *old = oldByKey.value(node->name())) {
            changed |= node->noteChangesFromProperty(*old);
        } else {
            node->setRegistryStateRecursive(RegistryStateNew);
            changed = true;
        }
    }
    for (TavRegistryProperty *old : oldChildren) {
        if (!newKeys.contains(old->name())) {
            appendTerminatedCopy(*old);
            changed = true;
        }
    }
    if (changed)
        setRegistryState(RegistryStateChanged);
    return changed;
}

bool TavRegistryProperty::noteArrayChanges(TavRegistryProperty &older)
{
    const ChildList newChildren = children();
    const ChildList oldChildren = older.children();
    const std::size_t n = newChildren.size();
    const std::size_t m = older.presentChildren().size();
    bool changed = n != m;
    for (std::size_t i = 0; i < std::min(n, m); ++i)
        changed |= newChildren[i]->noteChangesFromProperty(*oldChildren[i]);
    for (std::size_t i = m; i < n; ++i)
        newChildren[i]->setRegistryStateRecursive(RegistryStateNew);
    for (std::size_t i = n; i < m; ++i)
        appendTerminatedCopy(*oldChildren[i]);
    if (changed)
        setRegistryState(RegistryStateChanged);
    return changed;
}

bool TavRegistryProperty::noteSetChanges(TavRegistryProperty &older)
{
    // Deliberate: collections in a set equal only themselves, so the index holds scalars only.
    using Index = QMultiHash<size_t, TavRegistryProperty *>;
    const auto indexed = [](const ChildList &nodes) {
        Index index;
        for (TavRegistryProperty *node : nodes)
            index.insert(qHash(node->contents()), node);
        return index;
    };
    const auto contains = [](const Index &index, const TavRegistryProperty &node) {
        if (node.isCollection())
            return false;
        const auto [begin, end] = index.equal_range(qHash(node.contents()));
        return std::any_of(begin, end,
                           [&](const TavRegistryProperty *other) { return node.isEqual(*other); });
    };
    const ChildList newChildren = children();
    const ChildList oldChildren = older.presentChildren();
    const Index newIndex = indexed(newChildren);
    const Index oldIndex = indexed(oldChildren);
    bool changed = false;
    for (TavRegistryProperty *node : newChildren) {
        if (!contains(oldIndex, *node)) {
            node->setRegistryStateRecursive(RegistryStateNew);
            changed = true;
        }
    }
    for (TavRegistryProperty *old : oldChildren) {
        if (!contains(newIndex, *old)) {
            appendTerminatedCopy(*old);
            changed = true;
        }
    }
    if (changed)
        setRegistryState(RegistryStateChanged);
    return changed;
}

TavRegistryProperty::ChildList &TavRegistryProperty::listChildren()
{
    if (!children_.isListed) {
        auto *list = new ChildList(children());
        children_.list = list;
        children_.isListed = true;
    }
    return *children_.list;
}

void TavRegistryProperty::appendTerminatedCopy(TavRegistryProperty &older)
{
    const PropertyRef copied = older.copy();
    copied->setRegistryStateRecursive(RegistryStateTerminated);
    listChildren().push_back(copied.get());
    ++children_.count;
    tree_->keep(copied->tree_->shared_from_this());
}

PropertyRef TavRegistryProperty::copy()
{
    const auto tree =
        std::make_shared<PropertyTree>(tree_->nodeClass(), tree_->entry(), tree_->dateRead());
    tree->keep(tree_->shared_from_this()); // it holds the parent and the children
    TavRegistryProperty *node = tree->addNodes(1);
    node->parent_ = parent_;
    node->ident_ = ident_;
    node->state_ = state_;
    node->flags_ = flags_;
    if (isCollection()) {
        node->value_.~RegistryValue();
        node->children_ = {{}, children_.count, true};
        node->children_.list = new ChildList(children());
    } else {
        node->value_ = value_;
    }
    return PropertyRef(tree, node);
}
