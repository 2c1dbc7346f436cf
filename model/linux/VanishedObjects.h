// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QHash>
#include <QSet>

class RegistryGraph;
class SysfsRoot;
struct HostObject;

// Tracks vanished objects. Gives a new ID to one that returns with its old node, such as a network
// interface that moves to another namespace and back.
class VanishedObjects
{
public:
    quint64 idOf(quint64 nodeID) const { return ids_.value(nodeID, nodeID); }
    // Whether an object of the graph has vanished.
    bool isGone(const HostObject &object) const;
    bool isGoneNode(quint64 nodeID) const { return gone_.contains(nodeID); }

    void noteGone(const HostObject &object);
    void notePresent(quint64 nodeID); // it has returned if it was gone
    // Gives returned objects their new IDs; objects seen just before they vanished stay gone.
    // Returns whether IDs differ from those of the previous graph.
    bool applyTo(RegistryGraph &graph, const SysfsRoot &root);

private:
    QSet<quint64> gone_;                // nodes
    QHash<quint64, quint64> ids_;       // by node, of returned objects
    quint64 lastID_ = quint64(3) << 62; // above all node numbers
    quint64 lastApplied_ = lastID_;     // at the last graph
};
