// SPDX-License-Identifier: Apache-2.0
#include "display/PropertyCounterparts.h"

#include <QHash>

namespace {
bool isKeyed(const TavRegistryProperty &container)
{
    return container.valueType() == TavRegistryProperty::Type::Dictionary;
}

// The first node with a name counts, as elsewhere.
QHash<QStringView, qsizetype> positionsByName(const TavRegistryProperty &container)
{
    QHash<QStringView, qsizetype> positions;
    positions.reserve(container.numberOfChildren());
    for (qsizetype i = container.numberOfChildren() - 1; i >= 0; --i)
        positions.insert(container.childAtIndex(i)->nameView(), i);
    return positions;
}

TavRegistryProperty *childLike(const TavRegistryProperty &older, const TavRegistryProperty &newer)
{
    if (newer.valueType() != older.parent()->valueType())
        return nullptr;
    if (isKeyed(newer))
        return newer.childWithName(older.name());
    const qsizetype position = PropertyCounterparts::position(older);
    return position < newer.numberOfChildren() ? newer.childAtIndex(position) : nullptr;
}
} // namespace

std::vector<qsizetype> PropertyCounterparts::positionsOfChildren(const TavRegistryProperty &older,
                                                                 const TavRegistryProperty &newer)
{
    std::vector<qsizetype> positions(static_cast<std::size_t>(older.numberOfChildren()), -1);
    if (older.valueType() != newer.valueType())
        return positions;
    const qsizetype count = newer.numberOfChildren();
    QHash<QStringView, qsizetype> byName; // filled only if keys have moved
    for (qsizetype i = 0; i < older.numberOfChildren(); ++i) {
        qsizetype &position = positions[static_cast<std::size_t>(i)];
        if (!isKeyed(newer)) {
            position = i < count ? i : -1;
            continue;
        }
        const QStringView name = older.childAtIndex(i)->nameView();
        if (i < count && newer.childAtIndex(i)->nameView() == name) {
            position = i;
            continue;
        }
        if (byName.isEmpty())
            byName = positionsByName(newer);
        position = byName.value(name, -1);
    }
    return positions;
}

TavRegistryProperty *PropertyCounterparts::find(const TavRegistryProperty &older,
                                                TavRegistryProperty &newRoot)
{
    std::vector<const TavRegistryProperty *> way; // from the node up
    for (const TavRegistryProperty *node = &older; node->parent(); node = node->parent())
        way.push_back(node);
    TavRegistryProperty *newer = &newRoot;
    for (auto node = way.rbegin(); node != way.rend() && newer; ++node)
        newer = childLike(**node, *newer);
    return newer;
}

qsizetype PropertyCounterparts::position(const TavRegistryProperty &node)
{
    const TavRegistryProperty &parent = *node.parent();
    qsizetype position = 0;
    while (position < parent.numberOfChildren() && parent.childAtIndex(position) != &node)
        ++position;
    return position;
}
