// SPDX-License-Identifier: Apache-2.0
#include "model/TavRegistryProperty.h"

#include <QCoreApplication>
#include <new>

TavRegistryProperty::TavRegistryProperty(PropertyTree &tree)
    : tree_(&tree)
    , value_()
{}

TavRegistryProperty::~TavRegistryProperty()
{
    if (!isCollection())
        value_.~RegistryValue();
    else if (children_.isListed)
        delete children_.list;
}

const PropertyClass &TavRegistryProperty::staticPropertyClass()
{
    static const PropertyClass propertyClass{
        nullptr, sizeof(TavRegistryProperty),
        [](void *storage, PropertyTree &tree) { return new (storage) TavRegistryProperty(tree); }};
    return propertyClass;
}

PropertyRef TavRegistryProperty::create(const PropertyClass &nodeClass,
                                        const std::shared_ptr<TavRegistryEntry> &entry,
                                        const QDateTime &date, TavRegistryProperty *parent,
                                        const QString &name, quint32 /*index*/,
                                        const RegistryValue &value)
{
    if (value.isNone())
        return nullptr;
    const auto tree = std::make_shared<PropertyTree>(
        nodeClass, entry, date.isNull() ? QDateTime::currentDateTimeUtc() : date);
    const std::size_t count = 1 + value.descendantCount();
    TavRegistryProperty *const root = tree->addNodes(count);
    if (parent) {
        root->parent_ = parent;
        tree->keep(parent->tree_->shared_from_this());
    }
    if (!name.isNull())
        root->setName(CompactString(name));
    root->value_ = value;
    // Every node holds its value until it is opened into children.
    TavRegistryProperty *nextFree = tree->at(root, 1);
    for (std::size_t i = 0; i < count; ++i)
        tree->at(root, i)->openCollection(nextFree);
    return PropertyRef(tree, root);
}

PropertyRef TavRegistryProperty::restore(const PropertyClass &nodeClass,
                                         const std::shared_ptr<TavRegistryEntry> &entry,
                                         std::span<const PropertyRecord> nodes)
{
    const auto tree = std::make_shared<PropertyTree>(nodeClass, entry, QDateTime());
    std::vector<TavRegistryProperty *> made(nodes.size());
    made.front() = tree->addNodes(1);
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        const PropertyRecord &node = nodes[i];
        TavRegistryProperty &property = *made[i];
        property.setRegistryState(node.state);
        property.valueType_ = node.type;
        if (node.hasName)
            property.setName(node.name);
        if (!node.isCollection) {
            property.value_ = node.value;
            continue;
        }
        TavRegistryProperty *const first = tree->addNodes(node.childCount);
        property.value_.~RegistryValue();
        property.flags_ |= Collection;
        property.children_ = {{first}, node.childCount, false};
        for (quint32 child = 0; child < node.childCount; ++child) {
            made[node.firstChild + child] = tree->at(first, child);
            made[node.firstChild + child]->parent_ = &property;
        }
    }
    return PropertyRef(tree, made.front());
}

void TavRegistryProperty::openCollection(TavRegistryProperty *&nextFree)
{
    valueType_ = value_.type();
    if (!value_.isCollection())
        return;
    const RegistryValue value = std::move(value_);
    value_.~RegistryValue();
    flags_ |= Collection;
    children_ = {{nextFree}, static_cast<quint32>(value.count()), false};
    TavRegistryProperty *child = nextFree;
    const auto add = [&](const RegistryValue &childValue) {
        child->parent_ = this;
        child->value_ = childValue;
        child = tree_->at(child, 1);
    };
    for (const auto &member : value.members()) {
        child->setName(member.key);
        add(member.value);
    }
    for (const RegistryValue &element : value.elements()) {
        if (valueType_ == Type::Set)
            child->setName(CompactString());
        add(element);
    }
    nextFree = child;
}

void TavRegistryProperty::setName(CompactString name)
{
    ident_ = std::move(name);
    flags_ |= HasName;
}

PropertyRef TavRegistryProperty::ref()
{
    return PropertyRef(tree_->shared_from_this(), this);
}

std::shared_ptr<TavRegistryEntry> TavRegistryProperty::registryEntry() const
{
    return tree_->entry();
}

QDateTime TavRegistryProperty::dateRead() const
{
    return tree_->dateRead();
}

void TavRegistryProperty::noteRead(const QDateTime &date)
{
    tree_->setDateRead(date);
}

bool TavRegistryProperty::hasClass(const PropertyClass &nodeClass) const
{
    return &tree_->nodeClass() == &nodeClass;
}

template<class Action>
void TavRegistryProperty::forSubtree(Action action)
{
    ChildList pending{this};
    while (!pending.empty()) {
        TavRegistryProperty *node = pending.back();
        pending.pop_back();
        action(*node);
        for (qsizetype i = node->numberOfChildren(); i-- > 0;)
            pending.push_back(node->child(static_cast<std::size_t>(i)));
    }
}

void TavRegistryProperty::setRegistryStateRecursive(RegistryState state)
{
    forSubtree([state](TavRegistryProperty &node) { node.setRegistryState(state); });
}

void TavRegistryProperty::resetRegistryState()
{
    forSubtree([](TavRegistryProperty &node) {
        if (node.registryState() != RegistryStateTerminated)
            node.setRegistryState(RegistryStateUnchanged);
    });
}

void TavRegistryProperty::clearIsNew()
{
    forSubtree([](TavRegistryProperty &node) {
        if (node.registryState() == RegistryStateNew)
            node.setRegistryState(RegistryStateUnchanged);
    });
}

void TavRegistryProperty::removeDeletedChildren()
{
    if (numberOfChildren() == 0)
        return;
    std::erase_if(listChildren(), [](const TavRegistryProperty *child) {
        return child->registryState() == RegistryStateTerminated;
    });
    children_.count = static_cast<quint32>(children_.list->size());
}

QString TavRegistryProperty::name() const
{
    if (hasName())
        return ident_.toOwner();
    if (parent_ && parent_->valueType_ == Type::Array)
        return QString::number(index());
    if (parent_ && parent_->valueType_ == Type::Set)
        return QCoreApplication::translate("TavRegistryProperty", "(set item)");
    return {};
}

const RegistryValue &TavRegistryProperty::contents() const
{
    static const RegistryValue none{};
    return isCollection() ? none : value_;
}

RegistryValue TavRegistryProperty::value() const
{
    return contents();
}

qsizetype TavRegistryProperty::numberOfChildren() const
{
    return isCollection() ? children_.count : 0;
}

std::vector<TavRegistryProperty *> TavRegistryProperty::children() const
{
    ChildList list(static_cast<std::size_t>(numberOfChildren()));
    for (std::size_t i = 0; i < list.size(); ++i)
        list[i] = child(i);
    return list;
}

TavRegistryProperty *TavRegistryProperty::childAtIndex(qsizetype index) const
{
    return index >= 0 && index < numberOfChildren() ? child(static_cast<std::size_t>(index))
                                                    : nullptr;
}

TavRegistryProperty *TavRegistryProperty::childWithName(const QString &name) const
{
    if (valueType_ != Type::Dictionary)
        return nullptr;
    for (qsizetype i = 0; i < numberOfChildren(); ++i) {
        TavRegistryProperty *candidate = child(static_cast<std::size_t>(i));
        if (candidate->name() == name)
            return candidate;
    }
    return nullptr;
}

QString TavRegistryProperty::propertyPath() const
{
    std::vector<const TavRegistryProperty *> steps;
    for (const TavRegistryProperty *node = this; node->parent_; node = node->parent_)
        steps.push_back(node);
    QString path = QStringLiteral("/");
    for (auto step = steps.rbegin(); step != steps.rend(); ++step) {
        const TavRegistryProperty &node = **step;
        const QString ident =
            node.hasName() ? node.ident_.toOwner() : QString::number(node.index());
        if (node.parent_->valueType_ == Type::Array)
            path += u'[' + ident + u']';
        else
            path += u'/' + ident;
    }
    return path;
}

QVariantList TavRegistryProperty::keyIndexPath() const
{
    QVariantList path;
    for (const TavRegistryProperty *node = this; node->parent_; node = node->parent_)
        path.prepend(node->hasName() ? QVariant(node->ident_.toOwner())
                                     : QVariant(static_cast<qint32>(node->index())));
    return path;
}
