#pragma once

#include "model/NotificationPorts.h"
#include "model/linux/DeviceEvent.h"
#include "model/linux/ObjectHandles.h"
#include "model/linux/VanishedObjects.h"
#include "platform/runloop/OneShotTimer.h"

class SysfsRoot;

// Makes notifications of the host's events and of what a new graph shows. Every object that goes
// is announced once, be it by its event or because a reading has not found it.
class EventNotifier
{
public:
    EventNotifier(const SysfsRoot &root, ObjectHandles &objects, NotificationPorts &ports);

    void handle(const DeviceEvent &event);
    void readingBegins();
    // A reading's graph, before it is put in place. Whether there are other IDs than before.
    bool graphRead(RegistryGraph &graph) { return returned_.applyTo(graph, root_); }
    // After a reading: what was held and is not in its graph, and the host's busy count before it.
    void graphChanged(const std::vector<RegistryObject> &vanished, quint32 busyCountBefore);
    void busyCountChanged(quint32 before); // the host's
    void tellOfChange();                   // of something or other on the host

    // Announced as gone while the graph still has it.
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
    std::vector<SysfsPath> removalsInReading_; // which may have seen them just before
    std::vector<Removal> doubtful_;
    OneShotTimer::Ref nextCheck_;
};
