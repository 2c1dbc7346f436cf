// SPDX-License-Identifier: Apache-2.0
#include "display/comparison/ComparedValue.h"

using Type = RegistryValue::Type;

namespace {
// The parent and the children of a copy are those of its original.
TavRegistryProperty *originalCollection(const TavRegistryProperty &copy)
{
    if (copy.numberOfChildren() > 0)
        return copy.childAtIndex(0)->parent();
    return copy.parent() && copy.hasName() ? copy.parent()->childWithName(copy.name()) : nullptr;
}
} // namespace

PropertyRef ComparedValue::typed(const TavRegistryProperty &node)
{
    if (node.valueType() != Type::None)
        return nullptr;
    if (!node.isCollection())
        return TavRegistryProperty::create(node.propertyClass(), node.registryEntry(),
                                           node.dateRead(), node.parent(), node.name(), 0,
                                           node.value());
    TavRegistryProperty *const original = originalCollection(node);
    return original ? original->ref() : nullptr;
}

// Recursive: no deeper than a snapshot may hold.
RegistryValue ComparedValue::of(const TavRegistryProperty &node)
{
    if (!node.isCollection())
        return node.value();
    const PropertyRef original = typed(node);
    const Type type = (original ? *original : node).valueType();
    RegistryValue::Members members;
    RegistryValue::Elements elements;
    for (const TavRegistryProperty *const child : node.children()) {
        if (type == Type::Dictionary)
            members.push_back({CompactString(child->name()), of(*child)});
        else
            elements.push_back(of(*child));
    }
    if (type == Type::Dictionary)
        return RegistryValue::dictionary(std::move(members));
    return type == Type::Set ? RegistryValue::set(std::move(elements))
                             : RegistryValue::array(std::move(elements));
}
