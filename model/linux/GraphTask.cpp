// SPDX-License-Identifier: Apache-2.0
#include "model/linux/GraphTask.h"

#include "model/linux/HostFacts.h"
#include "model/linux/UdevDatabase.h"

namespace {
GraphTask::Result prepared(GraphTask::Input input, const std::stop_token &stop)
{
    const bool isLive = input.root->isKernels();
    GraphTask::Result result{std::move(input.treeReader), std::move(input.classNames), {}, {}, {}};
    TreeContents contents = result.treeReader.run(stop);
    if (stop.stop_requested())
        return result;
    result.filesRead = std::move(contents.filesRead);
    RegistryValue::Members rootFacts =
        isLive ? HostFacts::ofRunningKernel() : RegistryValue::Members();
    RegistryValue::Members hostFacts = HostFacts::ofDeviceTree(*input.root);
    if (isLive)
        hostFacts = mergedMembers(std::move(hostFacts), HostFacts::ofRunningSystem());
    UdevDatabase udev(input.root->folder());
    ObjectTable objects(std::move(contents), std::move(rootFacts), std::move(hostFacts),
                        result.classNames);
    for (int i = 0; i < objects.count(); ++i)
        input.requested.addTo(objects.at(i));
    result.graph =
        std::make_unique<RegistryGraph>(std::move(objects), udev, result.treeReader.detail());
    result.memory = result.graph->compareWith(input.memory, input.reading);
    return result;
}
} // namespace

GraphTask::GraphTask(Input input, std::function<void()> finished)
    : task_([input = std::move(input)](
                const std::stop_token &stop) mutable { return prepared(std::move(input), stop); },
            std::move(finished))
{}

GraphTask::~GraphTask() = default;

bool GraphTask::waitFor(std::chrono::milliseconds timeout) const
{
    return task_.waitFor(timeout);
}

GraphTask::Result GraphTask::take()
{
    return task_.take();
}

TreeReader GraphTask::cancel()
{
    task_.requestStop();
    return task_.take().treeReader;
}
