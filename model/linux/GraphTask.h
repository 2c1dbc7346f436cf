// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/linux/BackgroundTask.h"
#include "model/linux/ClassNames.h"
#include "model/linux/RegistryGraph.h"
#include "model/linux/RequestedAttributes.h"
#include "model/linux/TreeReader.h"

// Reads the whole host and builds the graph, in a thread of its own that shares no mutable state
// with the caller.
class GraphTask
{
public:
    struct Input
    {
        std::shared_ptr<const SysfsRoot> root;
        TreeReader treeReader;
        ClassNames classNames;
        RequestedAttributes requested;
        RegistryGraph::Memory memory; // of the previous reading
        quint64 reading;              // its number, from 1
    };
    struct Result
    {
        TreeReader treeReader; // knows what not to try again
        ClassNames classNames;
        std::unique_ptr<RegistryGraph> graph;
        RegistryGraph::Memory memory;
        std::vector<SysfsPath> filesRead;
    };

    // Starts. Calls finished in the thread.
    GraphTask(Input input, std::function<void()> finished);
    ~GraphTask(); // cancels the reading and waits for the thread

    bool waitFor(std::chrono::milliseconds timeout) const; // whether it has finished
    Result take();                                         // once, when it has finished
    // Cancels the reading, waits for the thread and returns its reader. Instead of take.
    TreeReader cancel();

private:
    BackgroundTask<Result> task_;
};
