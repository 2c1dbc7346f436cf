// SPDX-License-Identifier: Apache-2.0
#include "display/export/PropertyLines.h"

#include "display/TavPropertyOutlineItem.h"

namespace {
QString nameOf(const TavRegistryProperty &node, qsizetype position)
{
    return node.hasName() && !node.name().isEmpty() ? node.name()
                                                    : u'[' + QString::number(position) + u']';
}
} // namespace

void PropertyLines::forEach(const TavRegistryProperty &root,
                            const std::function<void(const Line &)> &action)
{
    struct Pending
    {
        TavRegistryProperty *node;
        qsizetype position; // among its siblings
        quint32 level;
    };
    std::vector<Pending> pending;
    const auto addChildren = [&](const TavRegistryProperty &node, quint32 level) {
        for (qsizetype i = node.numberOfChildren() - 1; i >= 0; --i)
            pending.push_back({node.childAtIndex(i), i, level});
    };
    addChildren(root, 0);
    while (!pending.empty()) {
        const Pending next = pending.back();
        pending.pop_back();
        action({static_cast<TavPropertyOutlineItem &>(*next.node),
                nameOf(*next.node, next.position), next.level});
        addChildren(*next.node, next.level + 1);
    }
}
