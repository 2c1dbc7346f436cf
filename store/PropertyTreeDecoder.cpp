#include "store/PropertyTreeDecoder.h"

#include "store/ArchiveKeys.h"
#include "store/DecodingLog.h"
#include "store/RegistryValueCoding.h"

PropertyTreeDecoder::PropertyTreeDecoder(KeyedUnarchiver &unarchiver)
    : unarchiver_(unarchiver)
    , isClaimed_(unarchiver.objectCount())
{}

PropertyRef PropertyTreeDecoder::decode(ArchiveReference root, ArchiveReference entry,
                                        TavRegistryEntry &owner)
{
    if (!claim(root))
        return nullptr;
    entry_ = entry;
    const auto tree = std::make_shared<PropertyTree>(TavRegistryEntry::currentPropertyClass(),
                                                     owner.weak_from_this(), QDateTime());
    TavRegistryProperty *const rootNode = tree->addNodes(1);
    pending_.assign({{root, rootNode, {}}});
    for (std::size_t i = 0; i < pending_.size(); ++i) {
        if (decodeNode(pending_[i]))
            continue;
        if (i > 0)
            logUnableToDecode("contents.children", unarchiver_);
        return nullptr;
    }
    return PropertyRef(tree, rootNode);
}

bool PropertyTreeDecoder::decodeNode(Pending pending)
{
    const ArchivedObject object = unarchiver_.object(pending.reference);
    TavRegistryProperty &node = *pending.node;
    if (object.decodeInteger<qint32>(PropertyKey::version, 1) > TavRegistryProperty::classVersion)
        return false;
    const bool isCollection = object.decodeBoolean(PropertyKey::isCollection);
    if (unarchiver_.error())
        return fail(PropertyKey::isCollection.data(), nullptr);
    const bool hasName = object.decodeBoolean(PropertyKey::hasName);
    if (unarchiver_.error())
        return fail(PropertyKey::hasName.data(), nullptr);
    if (object.decodeReference(PropertyKey::registryEntry, ArchiveClassName::entry) != entry_)
        return fail("registryEntry", "a property belongs to no or another entry");
    const auto state = object.decodeInteger<quint32>(PropertyKey::registryState);
    if (unarchiver_.error() || state > RegistryStateTerminated)
        return fail(PropertyKey::registryState.data(), "unknown state of a property");
    node.setRegistryState(static_cast<RegistryState>(state));
    return decodeParent(object, pending) && decodeIdent(object, node, hasName) &&
           (isCollection ? decodeChildren(object, node) : decodeValue(object, node));
}

// The parent must be the node that lists this one, or paths could lead astray or in circles.
bool PropertyTreeDecoder::decodeParent(const ArchivedObject &object, const Pending &pending)
{
    const auto parent = object.decodeReference(PropertyKey::parent, ArchiveClassName::property);
    if (parent && parent != pending.parent)
        return fail("parent", "a property's parent does not list it");
    return parent || !unarchiver_.error() || fail("parent", nullptr);
}

bool PropertyTreeDecoder::decodeIdent(const ArchivedObject &object, TavRegistryProperty &node,
                                      bool hasName)
{
    if (!hasName) {
        object.decodeInteger<qint32>(PropertyKey::index); // Deliberate: nodes have no place for it
        return !unarchiver_.error() || fail(PropertyKey::index.data(), nullptr);
    }
    node.setName(CompactString(object.decodeString(PropertyKey::name)));
    return !unarchiver_.error() || fail("ident.name", nullptr);
}

bool PropertyTreeDecoder::decodeChildren(const ArchivedObject &object, TavRegistryProperty &node)
{
    using Type = RegistryValue::Type;
    const auto type = object.decodeInteger<qint32>(PropertyKey::collectionType);
    node.valueType_ = type == 3   ? Type::Set
                      : type == 2 ? Type::Dictionary
                      : type == 1 ? Type::Array
                                  : Type::Null;
    const auto children = object.decodeReferences(PropertyKey::children, ArchiveClassName::child);
    if (!children)
        return fail("contents.children", nullptr);
    for (const ArchiveReference child : *children) {
        if (!claim(child))
            return fail("contents.children", nullptr);
    }
    TavRegistryProperty *const first = node.tree_->addNodes(children->size());
    node.value_.~RegistryValue();
    node.flags_ |= TavRegistryProperty::Collection;
    node.children_ = {{first}, static_cast<quint32>(children->size()), false};
    for (std::size_t i = 0; i < children->size(); ++i) {
        TavRegistryProperty *const child = node.tree_->at(first, i);
        child->parent_ = &node;
        pending_.push_back({(*children)[i], child, object.reference()});
    }
    return true;
}

bool PropertyTreeDecoder::decodeValue(const ArchivedObject &object, TavRegistryProperty &node)
{
    constexpr auto kinds = ArchiveKind::Null | ArchiveKind::Boolean | ArchiveKind::Number |
                           ArchiveKind::String | ArchiveKind::Data | ArchiveKind::Date |
                           ArchiveKind::List;
    node.value_ = registryValue(object.decodeValue(PropertyKey::value, kinds));
    node.valueType_ = node.value_.type();
    return !node.value_.isNone() || fail("contents.value", nullptr);
}

bool PropertyTreeDecoder::claim(ArchiveReference node)
{
    if (isClaimed_[node.index]) {
        unarchiver_.fail(QStringLiteral("a property stands in two places"),
                         QStringLiteral("object %1").arg(node.index));
        return false;
    }
    isClaimed_[node.index] = true;
    return true;
}

bool PropertyTreeDecoder::fail(const char *what, const char *reason)
{
    if (reason)
        unarchiver_.fail(QLatin1String(reason), {});
    logUnableToDecode(what, unarchiver_);
    return false;
}
