// SPDX-License-Identifier: Apache-2.0
#include "model/linux/VanishedObjects.h"

#include "model/linux/RegistryGraph.h"
#include "model/linux/SysfsRoot.h"

bool VanishedObjects::isGone(const HostObject &object) const
{
    return gone_.contains(object.nodeID) || object.id != idOf(object.nodeID);
}

void VanishedObjects::noteGone(const HostObject &object)
{
    if (object.id == idOf(object.nodeID))
        gone_.insert(object.nodeID);
}

void VanishedObjects::notePresent(quint64 nodeID)
{
    if (gone_.remove(nodeID))
        ids_.insert(nodeID, ++lastID_);
}

bool VanishedObjects::applyTo(RegistryGraph &graph, const SysfsRoot &root)
{
    if (gone_.isEmpty() && ids_.isEmpty())
        return false;
    for (int i = 0; i < graph.count(); ++i) {
        const HostObject &object = graph.at(i);
        if (gone_.contains(object.nodeID) && root.inodeOf(object.path) == object.inode)
            notePresent(object.nodeID);
        graph.setID(i, idOf(object.nodeID));
    }
    return std::exchange(lastApplied_, lastID_) != lastID_;
}
