#include "model/TavRegistryProperty.h"

#include <QCoreApplication>
#include <QHash>
#include <new>

namespace {
template<class T>
int sign(const T &a, const T &b)
{
    return a < b ? -1 : b < a ? 1 : 0;
}

int sign(int comparison)
{
    return sign(comparison, 0);
}

int compareNumbers(const RegistryValue &a, const RegistryValue &b)
{
    const bool aNegative = a.isSignedNumber() && a.signedNumber() < 0;
    const bool bNegative = b.isSignedNumber() && b.signedNumber() < 0;
    if (aNegative != bNegative)
        return aNegative ? -1 : 1;
    return aNegative ? sign(a.signedNumber(), b.signedNumber())
                     : sign(a.numberBits(), b.numberBits());
}

// Shorter first; of equal lengths the last differing byte decides, and there the greater is first.
int compareData(const QByteArray &a, const QByteArray &b)
{
    if (a.size() != b.size())
        return sign(a.size(), b.size());
    for (qsizetype i = a.size() - 1; i >= 0; --i) {
        if (a[i] != b[i])
            return sign(static_cast<quint8>(b[i]), static_cast<quint8>(a[i]));
    }
    return 0;
}
} // namespace

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
    // Every node holds its value until its turn comes to be opened into children.
    TavRegistryProperty *nextFree = tree->at(root, 1);
    for (std::size_t i = 0; i < count; ++i)
        tree->at(root, i)->openCollection(nextFree);
    return PropertyRef(tree, root);
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

bool TavRegistryProperty::noteChangesFromProperty(TavRegistryProperty &older)
{
    state_ = older.state_;
    if (valueType_ == older.valueType_) {
        bool changed = false;
        if (!isCollection())
            changed = !(contents() == older.contents());
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
    // Collections in a set equal nothing but themselves, so values alone make the index.
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
    tree->keep(tree_->shared_from_this()); // its parent and its children live there
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

bool TavRegistryProperty::isEqual(const TavRegistryProperty &other) const
{
    if (this == &other)
        return true;
    return other.propertyClass().isKindOf(propertyClass()) && !isCollection() &&
           !other.isCollection() && value_ == other.value_;
}

int TavRegistryProperty::compareByName(const TavRegistryProperty &other) const
{
    switch (parent_ ? parent_->valueType_ : Type::None) {
    case Type::Dictionary:
        return sign(ident_.toOwner().compare(other.name(), Qt::CaseInsensitive));
    case Type::Array:
        return sign(index(), other.index());
    case Type::Set:
        return compareByValue(other);
    default:
        return 0;
    }
}

int TavRegistryProperty::typeRank(Type type)
{
    switch (type) {
    case Type::Boolean:
        return 1;
    case Type::Number:
        return 2;
    case Type::Data:
        return 3;
    case Type::String:
        return 4;
    case Type::Array:
        return 5;
    case Type::Dictionary:
        return 6;
    case Type::Set:
        return 7;
    default:
        return 0;
    }
}

// What a collection stores is its list of children, so it counts as an array.
TavRegistryProperty::Type TavRegistryProperty::storedType() const
{
    return isCollection() ? Type::Array : value_.type();
}

int TavRegistryProperty::compareByType(const TavRegistryProperty &other) const
{
    const int rank = typeRank(storedType());
    const int otherRank = typeRank(other.valueType_);
    if (rank == 0)
        return 0;
    if (otherRank == 0)
        return -1;
    return sign(rank, otherRank);
}

int TavRegistryProperty::compareByValue(const TavRegistryProperty &other) const
{
    const Type type = storedType();
    if (type != other.valueType_)
        return type == Type::Number ? -1 : compareByType(other);
    switch (type) {
    case Type::Boolean:
        return sign(value_.toBoolean(), other.value_.toBoolean());
    case Type::Number:
        return compareNumbers(value_, other.value_);
    case Type::String:
        return sign(value_.toString().compare(other.value_.toString(), Qt::CaseInsensitive));
    case Type::Data:
        return compareData(value_.toData(), other.value_.toData());
    case Type::Array:
    case Type::Dictionary:
    case Type::Set:
        return sign(numberOfChildren(), other.numberOfChildren());
    default:
        return 0;
    }
}
