// SPDX-License-Identifier: Apache-2.0
#include "store/filter/PropertyLookup.h"

namespace {
using Type = RegistryValue::Type;
} // namespace

const RegistryValue &PropertyLookup::tableOf(const TavRegistryEntry &entry, RegistryValue &place)
{
    if (entry.table().isNone() && entry.hasTree())
        place = tableOf(*entry.propertiesRef());
    return entry.table().isNone() ? place : entry.table();
}

// No deeper than a snapshot may hold.
RegistryValue PropertyLookup::tableOf(const TavRegistryProperty &node)
{
    if (!node.isCollection())
        return node.value();
    RegistryValue::Members members;
    RegistryValue::Elements elements;
    for (const TavRegistryProperty *const child : node.children()) {
        if (child->registryState() == RegistryStateTerminated)
            continue;
        if (node.valueType() == Type::Dictionary)
            members.push_back({CompactString(child->name()), tableOf(*child)});
        else
            elements.push_back(tableOf(*child));
    }
    if (node.valueType() == Type::Dictionary)
        return RegistryValue::dictionary(std::move(members));
    return node.valueType() == Type::Set ? RegistryValue::set(std::move(elements))
                                         : RegistryValue::array(std::move(elements));
}

PropertyLookup::Values PropertyLookup::find(const RegistryValue &table, const QStringList &keys)
{
    Values found;
    Level level{&table};
    while (!level.isEmpty() && found.isEmpty()) {
        Level next;
        const auto addBelow = [&](const RegistryValue &value) {
            if (value.isCollection() && value.type() != Type::Set)
                next.append(&value);
        };
        for (const RegistryValue *const collection : level) {
            for (const auto &[key, value] : collection->members()) {
                if (QStringView(key.data(), key.size()) == keys.front())
                    findBelow(value, std::span(keys).subspan(1), found);
                addBelow(value);
            }
            for (const RegistryValue &element : collection->elements())
                addBelow(element);
        }
        level = std::move(next);
    }
    return found;
}

void PropertyLookup::findBelow(const RegistryValue &value, std::span<const QString> keys,
                               Values &found)
{
    if (keys.empty()) {
        found.append(&value);
        return;
    }
    const RegistryValue &below = value.member(keys.front());
    if (!below.isNone())
        findBelow(below, keys.subspan(1), found);
    if (value.type() == Type::Array) {
        for (const RegistryValue &element : value.elements())
            findBelow(element, keys, found);
    }
}
