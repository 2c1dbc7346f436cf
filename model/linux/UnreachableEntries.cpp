// SPDX-License-Identifier: Apache-2.0
#include "model/linux/UnreachableEntries.h"

#include "model/linux/RegistryGraph.h"

namespace {
using Marks = std::vector<bool>; // by object

Marks reachedInPlane(const RegistryGraph &graph, Plane plane)
{
    Marks isReached(static_cast<std::size_t>(graph.count()));
    isReached[ObjectTable::root] = true;
    std::vector<int> pending{ObjectTable::root};
    while (!pending.empty()) {
        const int parent = pending.back();
        pending.pop_back();
        for (const int child : graph.childrenInPlane(parent, plane)) {
            if (isReached[static_cast<std::size_t>(child)])
                continue;
            isReached[static_cast<std::size_t>(child)] = true;
            pending.push_back(child);
        }
    }
    return isReached;
}

Marks membersOfPlane(const RegistryGraph &graph, Plane plane)
{
    Marks isMember(static_cast<std::size_t>(graph.count()));
    for (int parent = 0; parent < graph.count(); ++parent) {
        for (const int child : graph.childrenInPlane(parent, plane))
            isMember[static_cast<std::size_t>(parent)] = isMember[static_cast<std::size_t>(child)] =
                true;
    }
    return isMember;
}
} // namespace

QByteArrayList unreachableEntries(const RegistryGraph &graph)
{
    QByteArrayList unreachable;
    Marks isAnywhere(static_cast<std::size_t>(graph.count()));
    for (std::size_t i = 0; i < planeCount; ++i) {
        const auto plane = static_cast<Plane>(i);
        const Marks isReached = reachedInPlane(graph, plane);
        const Marks isMember = membersOfPlane(graph, plane);
        for (std::size_t object = 0; object < isMember.size(); ++object) {
            isAnywhere[object] = isAnywhere[object] || isMember[object];
            if (isMember[object] && !isReached[object])
                unreachable.append(QByteArray(planeNames[i]) + ": " +
                                   graph.at(static_cast<int>(object)).path.toByteArray());
        }
    }
    for (std::size_t object = 0; object < isAnywhere.size(); ++object) {
        if (!isAnywhere[object])
            unreachable.append("no plane: " +
                               graph.at(static_cast<int>(object)).path.toByteArray());
    }
    return unreachable;
}
