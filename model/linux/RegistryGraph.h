#pragma once

#include "model/linux/AcyclicEdges.h"
#include "model/linux/ObjectTable.h"

#include <array>
#include <span>

class RequestedAttributes;
class UdevDatabase;

// The host's registry as one reading found it: the objects, and who is whose child in each plane.
class RegistryGraph
{
public:
    RegistryGraph(ObjectTable objects, UdevDatabase &udev);

    int count() const { return objects_.count(); }
    const HostObject &at(int index) const { return objects_.at(index); }
    int withID(quint64 id) const; // or HostObject::none
    void setID(int index, quint64 id);
    int withPath(const SysfsPath &path) const { return objects_.withPath(path); }
    bool hasPlane(Plane plane) const;
    std::span<const int> childrenInPlane(int index, Plane plane) const;
    // What an object was in a reading, kept for the next one.
    struct Remembered
    {
        RegistryValue properties;
        std::array<size_t, 2> digest = {}; // of its names, state and children
        quint64 changedIn = 0;
    };
    using Memory = QHash<quint64, Remembered>; // by node
    // Shares the memory of properties that are equal to an earlier reading's, and notes which
    // objects are as they were. Readings count from 1.
    Memory compareWith(const Memory &earlier, quint64 reading);
    bool isUnchangedSince(int index, quint64 reading) const
    {
        return at(index).changedIn <= reading;
    }
    void noteAllChanged(Memory &memory);
    // What was read since; the properties that others have keep as they were.
    void addRequested(int index, const RequestedAttributes &requested);

private:
    struct Children
    {
        std::vector<int> first; // by object: where its children begin; one more at the end
        std::vector<int> all;
    };
    using PlaneEdges = std::array<std::vector<Edge>, planeCount>;

    const Children &children(Plane plane) const { return planes_[static_cast<std::size_t>(plane)]; }
    void arrange(const PlaneEdges &edges);
    void addPlaneCounts(const PlaneEdges &edges);
    void tellSiblingsApart(Plane plane);
    std::vector<int> siblingsNamedAlike(Plane plane) const;
    void finish(HostObject &object, UdevDatabase &udev);
    static void insertReasons(HostObject &object);
    void nameIncompleteObjects();
    void countBusyChildren();
    std::array<size_t, 2> digest(int index) const;

    quint64 reading_ = 0;
    ObjectTable objects_;
    QHash<quint64, int> byID_;
    std::array<Children, planeCount> planes_;
};
