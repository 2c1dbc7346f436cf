// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/linux/Plane.h"
#include "model/linux/RawObject.h"

// UTF-8, at most 127 bytes each. Null location: none.
struct NameAndLocation
{
    QByteArray name;
    QByteArray location;

    friend bool operator==(const NameAndLocation &, const NameAndLocation &) = default;
};

// An object of the host with everything that the registry reports about it.
struct HostObject : RawObject
{
    static constexpr int none = -1;

    quint64 id = 0;
    quint64 nodeID = 0;   // the same unless the object vanished and returned
    QByteArray subsystem; // of a device; of a binding, its bus
    bool isOnBus = false; // the subsystem is a bus rather than a class

    // Indices among the host's objects.
    int parent = none;          // the nearest device or container above; of a firmware node, a node
    int subsystemObject = none; // the bus or class, if the tree has it
    int device = none;          // of a binding
    int binding = none;         // of a device
    int driver = none;          // of a binding

    NameAndLocation name;                                         // in no plane in particular
    std::vector<std::pair<Plane, NameAndLocation>> namesInPlanes; // where they differ
    QByteArray module; // supplies the class; null: the kernel itself
    QString className;

    bool isAnnounced = true; // false: the udev daemon has not processed it yet
    quint32 ownBusyCount = 0;
    quint32 busyChildren = 0;
    quint32 retainCount = 1;
    QStringList refusedParents;
    RegistryValue properties;
    quint64 changedIn = 0; // the number of the last reading that found a change

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
