#include "model/linux/ReturnedObjects.h"

#include "model/linux/RegistryGraph.h"
#include "model/linux/SysfsRoot.h"

bool ReturnedObjects::isGone(const HostObject &object) const
{
    return gone_.contains(object.nodeID) || object.id != idOf(object.nodeID);
}

void ReturnedObjects::noteGone(const HostObject &object)
{
    if (object.id == idOf(object.nodeID))
        gone_.insert(object.nodeID);
}

void ReturnedObjects::notePresent(quint64 nodeID)
{
    if (gone_.remove(nodeID))
        ids_.insert(nodeID, ++lastID_);
}

bool ReturnedObjects::applyTo(RegistryGraph &graph, const SysfsRoot &root)
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
