#pragma once

#include <QHash>
#include <QSet>

class RegistryGraph;
class SysfsRoot;
struct HostObject;

// Gives a new ID to an object that went and came back under its old node: a network interface that
// moves to another namespace and back keeps its own.
class VanishedObjects
{
public:
    quint64 idOf(quint64 nodeID) const { return ids_.value(nodeID, nodeID); }
    // Whether an object of a graph is gone by now.
    bool isGone(const HostObject &object) const;
    bool isGoneNode(quint64 nodeID) const { return gone_.contains(nodeID); }

    void noteGone(const HostObject &object);
    void notePresent(quint64 nodeID); // it has come back, if it was gone
    // Renumbers what a reading has found again; what it saw just before it went stays gone. Whether
    // there are other IDs than in the graph before.
    bool applyTo(RegistryGraph &graph, const SysfsRoot &root);

private:
    QSet<quint64> gone_;                // nodes
    QHash<quint64, quint64> ids_;       // by node, of what has come back
    quint64 lastID_ = quint64(3) << 62; // beyond the nodes' numbers
    quint64 lastApplied_ = lastID_;     // as of the last graph
};
