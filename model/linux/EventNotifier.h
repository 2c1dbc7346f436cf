#pragma once

#include "model/NotificationPorts.h"
#include "model/linux/DeviceEvent.h"
#include "model/linux/HeldObjects.h"
#include "platform/OneShotTimer.h"

class SysfsRoot;

// Makes notifications of the host's events and of what a new graph shows. Every object that goes
// is announced once, be it by its event or because a sweep has not found it.
class EventNotifier
{
public:
    EventNotifier(const SysfsRoot &root, HeldObjects &objects, NotificationPorts &ports);

    void handle(const DeviceEvent &event);
    void sweepBegins();
    // After a sweep: what was held and is not in its graph, and the host's busy count before it.
    void graphChanged(const std::vector<RegistryObject> &vanished, quint32 busyCountBefore);
    void graphKept();                      // the sweep has brought none
    void busyCountChanged(quint32 before); // the host's
    void tellOfChange();                   // of something or other on the host

    // Announced as gone while the graph still has it.
    bool isGone(int index) const { return gone_.contains(objects_.graph()->at(index).id); }

private:
    struct Removal
    {
        QByteArray path;
        int checksLeft;
    };

    void appeared(NotificationPorts::Matching kind, const QByteArray &path);
    void noteRemoval(const QByteArray &path);
    void check(const Removal &removal);
    void checkAgain();
    void announceGone(RegistryObject object);

    const SysfsRoot &root_;
    HeldObjects &objects_;
    NotificationPorts &ports_;
    QSet<quint64> gone_; // IDs in the graph
    bool isSweeping_ = false;
    std::vector<QByteArray> removalsInSweep_; // which may have seen them just before
    std::vector<Removal> doubtful_;
    OneShotTimer::Ref nextCheck_;
};
