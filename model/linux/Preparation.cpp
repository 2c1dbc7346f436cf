#include "model/linux/Preparation.h"

#include "model/linux/HostFacts.h"
#include "model/linux/UdevDatabase.h"

namespace {
Preparation::Result prepared(Preparation::Input input, const std::stop_token &stop)
{
    const bool isLive = input.root->isKernels();
    Preparation::Result result{std::move(input.sweeper), std::move(input.classNames), {}, {}, {}};
    Sweep sweep = result.sweeper.run(stop);
    if (stop.stop_requested())
        return result;
    result.filesRead = std::move(sweep.filesRead);
    RegistryValue::Members rootFacts =
        isLive ? HostFacts::ofRunningKernel() : RegistryValue::Members();
    RegistryValue::Members hostFacts = HostFacts::ofDeviceTree(*input.root);
    if (isLive)
        hostFacts = mergedMembers(std::move(hostFacts), HostFacts::ofRunningSystem());
    UdevDatabase udev(input.root->folder());
    HostObjects objects(std::move(sweep), std::move(rootFacts), std::move(hostFacts),
                        result.classNames);
    for (int i = 0; i < objects.count(); ++i)
        input.requested.addTo(objects.at(i));
    result.graph = std::make_unique<RegistryGraph>(std::move(objects), udev);
    result.memory = result.graph->compareWith(input.memory, input.sweep);
    return result;
}
} // namespace

Preparation::Preparation(Input input, std::function<void()> finished)
    : task_([input = std::move(input)](
                const std::stop_token &stop) mutable { return prepared(std::move(input), stop); },
            std::move(finished))
{}

Preparation::~Preparation() = default;

bool Preparation::waitFor(std::chrono::milliseconds most) const
{
    return task_.waitFor(most);
}

Preparation::Result Preparation::take()
{
    return task_.take();
}

Sweeper Preparation::cancel()
{
    task_.requestStop();
    return task_.take().sweeper;
}
