// SPDX-License-Identifier: Apache-2.0
#include "explorer/tree/OutlineConnectors.h"

#include "explorer/tree/TavRegistryOutlineItem.h"

namespace {
constexpr int margin = 4;
constexpr int leafOffset = 18; // from the connector

int levelOf(const TavRegistryOutlineItem &item)
{
    int level = 0;
    for (const TavRegistryOutlineItem *parent = item.parent(); parent; parent = parent->parent())
        ++level;
    return level;
}

OutlineImages::Image connectorOf(const TavRegistryOutlineItem &item)
{
    const bool isLast = !item.hasSiblingsFollowing();
    if (item.isOnSelectionPath())
        return isLast ? OutlineImages::SelectionPathL : OutlineImages::SelectionPathTRight;
    if (isLast)
        return OutlineImages::L;
    return item.hasSiblingFollowingOnSelectionPath() ? OutlineImages::SelectionPathTDown
                                                     : OutlineImages::T;
}
} // namespace

std::vector<OutlineConnector> outlineConnectors(TavRegistryOutlineItem &item, int indentation)
{
    std::vector<OutlineConnector> connectors;
    if (!item.parent())
        return connectors;
    int x = (levelOf(item) - 1) * indentation + margin;
    if (item.numberOfChildren() < 1)
        connectors.push_back(
            {item.isOnSelectionPath() ? OutlineImages::SelectionPathLeaf : OutlineImages::Leaf,
             x + leafOffset});
    connectors.push_back({connectorOf(item), x});
    for (const TavRegistryOutlineItem *p = item.parent(); p->parent(); p = p->parent()) {
        x -= indentation;
        if (p->hasSiblingsFollowing())
            connectors.push_back({p->hasSiblingFollowingOnSelectionPath()
                                      ? OutlineImages::SelectionPathI
                                      : OutlineImages::I,
                                  x});
    }
    return connectors;
}
