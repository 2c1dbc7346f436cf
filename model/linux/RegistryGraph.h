// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/linux/AcyclicEdges.h"
#include "model/linux/ObjectTable.h"
#include "model/linux/ReadingDetail.h"

#include <array>
#include <span>

class RequestedAttributes;
class UdevDatabase;

// The host's registry after one reading: the objects, and parents and children in each plane.
class RegistryGraph
{
public:
    RegistryGraph(ObjectTable objects, UdevDatabase &udev,
                  ReadingDetail detail = ReadingDetail::Everything);

    int count() const { return objects_.count(); }
    const HostObject &at(int index) const { return objects_.at(index); }
    int withID(quint64 id) const; // or HostObject::none
    void setID(int index, quint64 id);
    int withPath(const SysfsPath &path) const { return objects_.withPath(path); }
    bool hasPlane(Plane plane) const;
    std::span<const int> childrenInPlane(int index, Plane plane) const;
    // The state of an object in a reading, for comparing with the next one.
    struct Remembered
    {
        RegistryValue properties;
        std::array<size_t, 2> digest = {}; // of its names, state and children
        quint64 changedIn = 0;
    };
    using Memory = QHash<quint64, Remembered>; // by node
    // Shares memory with equal properties of an earlier reading, and notes which objects are
    // unchanged. Readings count from 1.
    Memory compareWith(const Memory &earlier, quint64 reading);
    bool isUnchangedSince(int index, quint64 reading) const
    {
        return at(index).changedIn <= reading;
    }
    void noteAllChanged(Memory &memory);
    // Adds what was read since. Properties already handed out do not change.
    void addRequested(int index, const RequestedAttributes &requested);

    // Replaces the properties of an object of which only the structure was read. States stay.
    void addWhole(int index, RawObject read, const RequestedAttributes &requested,
                  UdevDatabase &udev);

private:
    struct Children
    {
        std::vector<int> first; // by object: the start of its children; one extra at the end
        std::vector<int> all;
    };
    using PlaneEdges = std::array<std::vector<Edge>, planeCount>;

    const Children &children(Plane plane) const { return planes_[static_cast<std::size_t>(plane)]; }
    void arrange(const PlaneEdges &edges);
    void addPlaneCounts(const PlaneEdges &edges);
    void distinguishSiblings(Plane plane);
    std::vector<int> siblingsWithEqualNames(Plane plane) const;
    static void finish(HostObject &object, UdevDatabase &udev, ReadingDetail detail);
    static bool insertRecord(HostObject &object, UdevDatabase &udev);
    static void complete(HostObject &object);
    static void insertReasons(HostObject &object);
    void listIncompleteObjects();
    void countBusyChildren();
    std::array<size_t, 2> digest(int index) const;

    quint64 reading_ = 0;
    ObjectTable objects_;
    QHash<quint64, int> byID_;
    std::array<Children, planeCount> planes_;
};
