#pragma once

#include "model/linux/BackgroundTask.h"
#include "model/linux/ClassNames.h"
#include "model/linux/RegistryGraph.h"
#include "model/linux/RequestedAttributes.h"
#include "model/linux/TreeReader.h"

// Reads the whole host in a thread of its own and makes the graph of it, sharing nothing with who
// asked that either of them changes.
class GraphTask
{
public:
    struct Input
    {
        std::shared_ptr<const SysfsRoot> root;
        TreeReader treeReader;
        ClassNames classNames;
        RequestedAttributes requested;
        RegistryGraph::Memory memory; // of the reading before
        quint64 reading;              // its number, from 1
    };
    struct Result
    {
        TreeReader treeReader; // has learnt what not to try again
        ClassNames classNames;
        std::unique_ptr<RegistryGraph> graph;
        RegistryGraph::Memory memory;
        std::vector<SysfsPath> filesRead;
    };

    // Begins. Finished is called in the thread.
    GraphTask(Input input, std::function<void()> finished);
    ~GraphTask(); // gives up the reading and waits for the thread's end

    bool waitFor(std::chrono::milliseconds most) const; // whether it is finished
    Result take();                                      // once, when it is
    // Gives up the reading, waits for the thread's end and returns who has swept. Instead of take.
    TreeReader cancel();

private:
    BackgroundTask<Result> task_;
};
