// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/RegistryService.h"
#include "model/linux/RegistryGraph.h"

#include <unordered_map>

// The handles in use, one for each object that is held. Most objects are in the current graph. An
// object that vanished, or was announced before a reading found it, is held with its own copy of
// its facts.
class ObjectHandles
{
public:
    const RegistryGraph *graph() const { return graph_.get(); } // null before the first reading
    RegistryGraph *graph() { return graph_.get(); }
    // Installs a new graph. Objects that it lacks keep their last facts and are added to vanished.
    // Returns the previous graph.
    std::unique_ptr<RegistryGraph> setGraph(std::unique_ptr<RegistryGraph> graph,
                                            std::vector<RegistryObject> &vanished);

    // Release each handle once.
    RegistryObject hold(int index);
    RegistryObject hold(HostObject facts); // by ID; uses the facts if the graph lacks it
    void retain(RegistryObject object);
    void release(RegistryObject object);

    const HostObject *find(RegistryObject object) const; // null for an invalid handle
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
    std::vector<Held> held_; // by handle - 1
    std::vector<RegistryObject> free_;
    std::vector<RegistryObject> byIndex_; // in the graph; 0: not held
    std::unordered_map<quint64, RegistryObject> apartByID_;
};
