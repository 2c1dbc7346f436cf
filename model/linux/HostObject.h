#pragma once

#include "model/linux/Plane.h"
#include "model/linux/RawObject.h"

// UTF-8, at most 127 bytes each. A null location is none.
struct NameAndLocation
{
    QByteArray name;
    QByteArray location;

    friend bool operator==(const NameAndLocation &, const NameAndLocation &) = default;
};

// An object of the host with all that the registry tells of it.
struct HostObject : RawObject
{
    static constexpr int none = -1;

    quint64 id = 0;
    quint64 nodeID = 0;   // the same, unless the object went and came back
    QByteArray subsystem; // of a device; of a binding, its bus
    bool isOnBus = false; // the subsystem is a bus, not a class

    // Indices among the host's objects.
    int parent = none;          // the nearest device or container above; of a firmware node, a node
    int subsystemObject = none; // the bus or class, where the tree has it
    int device = none;          // of a binding
    int binding = none;         // of a device
    int driver = none;          // of a binding

    NameAndLocation name;                                         // in no plane in particular
    std::vector<std::pair<Plane, NameAndLocation>> namesInPlanes; // where they differ
    QByteArray module; // that supplies the class; null: the kernel itself
    QString className;

    bool isAnnounced = true; // the udev daemon, where one runs, has finished with it
    quint32 ownBusyCount = 0;
    quint32 busyChildren = 0;
    quint32 retainCount = 1;
    QStringList refusedParents;
    RegistryValue properties;
    quint64 changedIn = 0; // the reading that found it not as the one before

    quint32 busyCount() const { return ownBusyCount + busyChildren; }
    bool isService() const
    {
        return kind == Kind::Device || kind == Kind::Binding || kind == Kind::Container ||
               kind == Kind::Host;
    }
    const NameAndLocation &nameInPlane(Plane plane) const
    {
        for (const auto &[its, nameThere] : namesInPlanes) {
            if (its == plane)
                return nameThere;
        }
        return name;
    }
};
