#pragma once

#include "model/RegistryService.h"
#include "model/linux/RegistryGraph.h"

#include <unordered_map>

// The handles that are given out, one for each object that somebody holds. Most objects are in the
// current graph. One that is not, because it is gone from the host or because it was announced and
// no reading has seen it yet, is held apart with facts of its own.
class ObjectHandles
{
public:
    const RegistryGraph *graph() const { return graph_.get(); } // null before the first reading
    RegistryGraph *graph() { return graph_.get(); }
    // Moves to a new graph. What is held and not in it any more keeps its last facts and is added
    // to the vanished. Returns the graph before.
    std::unique_ptr<RegistryGraph> setGraph(std::unique_ptr<RegistryGraph> graph,
                                            std::vector<RegistryObject> &vanished);

    // Each is to be released once.
    RegistryObject hold(int index);
    RegistryObject hold(HostObject facts); // by its ID; the facts serve if the graph has none
    void retain(RegistryObject object);
    void release(RegistryObject object);

    const HostObject *find(RegistryObject object) const; // null for no valid handle
    int indexOf(RegistryObject object) const;            // in the graph, or HostObject::none

private:
    struct Held
    {
        quint32 references = 0; // none: the handle is free
        int index = HostObject::none;
        std::unique_ptr<HostObject> apart;
    };

    bool isValid(RegistryObject object) const
    {
        return object > 0 && object <= held_.size() && held_[object - 1].references > 0;
    }
    RegistryObject newHandle();

    std::unique_ptr<RegistryGraph> graph_;
    std::vector<Held> held_; // by handle, less one
    std::vector<RegistryObject> free_;
    std::vector<RegistryObject> byIndex_; // in the graph; 0: nobody holds it
    std::unordered_map<quint64, RegistryObject> apartByID_;
};
