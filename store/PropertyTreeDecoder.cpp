// SPDX-License-Identifier: Apache-2.0
#include "store/PropertyTreeDecoder.h"

#include "store/ArchiveKeys.h"
#include "store/DecodingLog.h"
#include "store/RegistryValueCoding.h"

#include <span>

PropertyTreeDecoder::PropertyTreeDecoder(KeyedUnarchiver &unarchiver)
    : unarchiver_(unarchiver)
    , isClaimed_(unarchiver.objectCount())
{}

PropertyTreeDecoder::Decoded
PropertyTreeDecoder::decode(ArchiveReference root, ArchiveReference entry, TavRegistryEntry &owner)
{
    if (!claim(root))
        return {};
    entry_ = entry;
    nodes_.clear();
    nodes_.emplace_back().reference = root;
    for (std::size_t i = 0; i < nodes_.size(); ++i) {
        if (decodeNode(i))
            continue;
        if (i > 0)
            logUnableToDecode("contents.children", unarchiver_);
        return {};
    }
    if (std::all_of(nodes_.begin(), nodes_.end(),
                    [this](const Node &node) { return isOfTable(node); }))
        return {makeTable(), nullptr};
    return {{}, makeTree(owner)};
}

bool PropertyTreeDecoder::decodeNode(std::size_t index)
{
    Node &node = nodes_[index];
    const ObjectDecoder object = unarchiver_.object(node.reference);
    if (object.decodeInteger<qint32>(PropertyKey::version, 1) > TavRegistryProperty::classVersion)
        return false;
    node.isCollection = object.decodeBoolean(PropertyKey::isCollection);
    if (unarchiver_.error())
        return fail(PropertyKey::isCollection.data(), nullptr);
    node.hasName = object.decodeBoolean(PropertyKey::hasName);
    if (unarchiver_.error())
        return fail(PropertyKey::hasName.data(), nullptr);
    if (object.decodeReference(PropertyKey::registryEntry, ArchiveClassName::entry) != entry_)
        return fail("registryEntry", "the property does not belong to the entry");
    const auto state = object.decodeInteger<quint32>(PropertyKey::registryState);
    if (unarchiver_.error() || state > RegistryStateTerminated)
        return fail(PropertyKey::registryState.data(), "unknown state of a property");
    node.state = static_cast<RegistryState>(state);
    return decodeParent(object, node) && decodeIdent(object, node) &&
           (node.isCollection ? decodeChildren(object, index) : decodeValue(object, node));
}

// The parent must be the node that lists this one, or paths could be wrong or endless.
bool PropertyTreeDecoder::decodeParent(const ObjectDecoder &object, const Node &node)
{
    const auto parent = object.decodeReference(PropertyKey::parent, ArchiveClassName::property);
    if (parent && (!node.parent || nodes_[*node.parent].reference != *parent))
        return fail("parent", "a property's parent does not list it");
    return parent || !unarchiver_.error() || fail("parent", nullptr);
}

bool PropertyTreeDecoder::decodeIdent(const ObjectDecoder &object, Node &node)
{
    if (!node.hasName) {
        object.decodeInteger<qint32>(PropertyKey::index); // Deliberate: not stored
        return !unarchiver_.error() || fail(PropertyKey::index.data(), nullptr);
    }
    node.name = CompactString(object.decodeString(PropertyKey::name));
    return !unarchiver_.error() || fail("ident.name", nullptr);
}

bool PropertyTreeDecoder::decodeChildren(const ObjectDecoder &object, std::size_t index)
{
    using Type = RegistryValue::Type;
    const auto type = object.decodeInteger<qint32>(PropertyKey::collectionType);
    const auto children = object.decodeReferences(PropertyKey::children, ArchiveClassName::child);
    if (!children)
        return fail("contents.children", nullptr);
    for (const ArchiveReference child : *children) {
        if (!claim(child))
            return fail("contents.children", nullptr);
    }
    Node &node = nodes_[index];
    node.type = type == 3   ? Type::Set
                : type == 2 ? Type::Dictionary
                : type == 1 ? Type::Array
                            : Type::Null;
    node.firstChild = nodes_.size();
    node.childCount = static_cast<quint32>(children->size());
    const quint32 depth = node.depth + 1;
    for (const ArchiveReference child : *children) { // may move the node
        Node &added = nodes_.emplace_back();
        added.reference = child;
        added.parent = index;
        added.depth = depth;
    }
    return true;
}

bool PropertyTreeDecoder::decodeValue(const ObjectDecoder &object, Node &node)
{
    constexpr auto kinds = ArchiveKind::Null | ArchiveKind::Boolean | ArchiveKind::Number |
                           ArchiveKind::String | ArchiveKind::Data | ArchiveKind::Date |
                           ArchiveKind::List;
    node.value = registryValue(object.decodeValue(PropertyKey::value, kinds));
    if (node.value.type() == RegistryValue::Type::Number && !decodeNotation(object, node))
        return false;
    node.type = node.value.type();
    return !node.value.isNone() || fail("contents.value", nullptr);
}

bool PropertyTreeDecoder::decodeNotation(const ObjectDecoder &object, Node &node)
{
    using Notation = RegistryValue::Notation;
    const auto written = object.decodeInteger<quint32>(PropertyKey::notation);
    if (unarchiver_.error())
        return fail(PropertyKey::notation.data(), nullptr);
    if (written <= static_cast<quint32>(Notation::Hexadecimal)) // else by a later version
        node.value =
            RegistryValue::number(node.value.numberBits(), node.value.numberWidth(),
                                  node.value.isSignedNumber(), static_cast<Notation>(written));
    return true;
}

bool PropertyTreeDecoder::isOfTable(const Node &node) const
{
    using Type = RegistryValue::Type;
    constexpr quint32 maxDepth = 64; // values are freed recursively
    const bool isSound = node.isCollection ? node.type != Type::Null && node.depth < maxDepth
                                           : !node.value.isCollection();
    if (!isSound || node.state != RegistryStateUnchanged)
        return false;
    switch (node.parent ? nodes_[*node.parent].type : Type::None) {
    case Type::Dictionary:
        return node.hasName;
    case Type::Set:
        return node.hasName && node.name.size() == 0;
    default:
        return !node.hasName;
    }
}

RegistryValue PropertyTreeDecoder::makeTable()
{
    for (auto node = nodes_.rbegin(); node != nodes_.rend(); ++node) {
        if (!node->isCollection)
            continue;
        const std::span children(nodes_.data() + node->firstChild, node->childCount);
        if (node->type == RegistryValue::Type::Dictionary) {
            RegistryValue::Members members;
            members.reserve(children.size());
            for (Node &child : children)
                members.push_back({std::move(child.name), std::move(child.value)});
            node->value = RegistryValue::dictionary(std::move(members));
            continue;
        }
        RegistryValue::Elements elements;
        elements.reserve(children.size());
        for (Node &child : children)
            elements.push_back(std::move(child.value));
        node->value = node->type == RegistryValue::Type::Set
                          ? RegistryValue::set(std::move(elements))
                          : RegistryValue::array(std::move(elements));
    }
    return std::move(nodes_.front().value);
}

PropertyRef PropertyTreeDecoder::makeTree(TavRegistryEntry &owner) const
{
    const std::vector<PropertyRecord> facts(nodes_.begin(), nodes_.end());
    return TavRegistryProperty::restore(TavRegistryEntry::currentPropertyClass(),
                                        owner.shared_from_this(), facts);
}

bool PropertyTreeDecoder::claim(ArchiveReference node)
{
    if (isClaimed_[node.index]) {
        unarchiver_.fail(QStringLiteral("a property is listed twice"),
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
