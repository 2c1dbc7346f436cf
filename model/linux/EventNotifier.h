// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/NotificationPorts.h"
#include "model/linux/DeviceEvent.h"
#include "model/linux/ObjectHandles.h"
#include "model/linux/VanishedObjects.h"
#include "platform/runloop/OneShotTimer.h"

class SysfsRoot;

// Turns the host's events and the changes of a new graph into notifications. Announces each
// vanished object once, by its event or because a reading did not find it.
class EventNotifier
{
public:
    EventNotifier(const SysfsRoot &root, ObjectHandles &objects, NotificationPorts &ports);

    void handle(const DeviceEvent &event);
    void readingBegins();
    // Called with a new graph before it is installed. Returns whether IDs changed.
    bool graphRead(RegistryGraph &graph) { return returned_.applyTo(graph, root_); }
    // After a reading: the held objects that its graph lacks, and the host's busy count before it.
    void graphChanged(const std::vector<RegistryObject> &vanished, quint32 busyCountBefore);
    void busyCountChanged(quint32 before); // the host's
    void reportChange();                   // an unspecified change of the host

    // Whether it was announced as gone while the graph still has it.
    bool isGone(int index) const { return returned_.isGone(objects_.graph()->at(index)); }
    bool isGoneNode(quint64 nodeID) const { return returned_.isGoneNode(nodeID); }

private:
    struct Removal
    {
        SysfsPath path;
        int checksLeft;
    };

    void appeared(NotificationPorts::Matching kind, const SysfsPath &path);
    void noteRemoval(const SysfsPath &path);
    void check(const Removal &removal);
    void checkAgain();
    void announceGone(RegistryObject object);

    const SysfsRoot &root_;
    ObjectHandles &objects_;
    NotificationPorts &ports_;
    VanishedObjects returned_;
    bool isReading_ = false;
    std::vector<SysfsPath> removalsInReading_; // the reading may have seen the objects before
    std::vector<Removal> doubtful_;
    OneShotTimer::Ref nextCheck_;
};
