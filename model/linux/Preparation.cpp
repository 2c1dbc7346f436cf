#include "model/linux/Preparation.h"

#include "model/linux/HostFacts.h"
#include "model/linux/UdevDatabase.h"

#include <system_error>

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
    result.properties = result.graph->shareProperties(input.properties);
    return result;
}
} // namespace

Preparation::Preparation(Input input, std::function<void()> finished)
{
    const auto task = std::make_shared<std::packaged_task<Result(const std::stop_token &)>>(
        [input = std::move(input)](const std::stop_token &stop) mutable {
            return prepared(std::move(input), stop);
        });
    result_ = task->get_future();
    const auto perform = [task, finished = std::move(finished)](const std::stop_token &stop) {
        (*task)(stop);
        finished();
    };
    try {
        thread_ = std::jthread(perform);
    } catch (const std::system_error &) {
        perform({}); // here, when there can be no other thread
    }
}

Preparation::~Preparation() = default;

bool Preparation::waitFor(std::chrono::milliseconds most) const
{
    return result_.wait_for(most) == std::future_status::ready;
}

Preparation::Result Preparation::take()
{
    return result_.get();
}

Sweeper Preparation::cancel()
{
    thread_.request_stop();
    return result_.get().sweeper;
}
