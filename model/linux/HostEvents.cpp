// SPDX-License-Identifier: Apache-2.0
#include "model/linux/HostEvents.h"

#include <sys/epoll.h>

std::unique_ptr<HostEvents> HostEvents::open(bool isDaemonRunning)
{
    auto devices = DeviceMonitor::open(isDaemonRunning);
    if (!devices)
        return nullptr;
    std::unique_ptr<HostEvents> events(new HostEvents(std::move(devices), LinkMonitor::open()));
    return events->both_ ? std::move(events) : nullptr;
}

HostEvents::HostEvents(std::unique_ptr<DeviceMonitor> devices, std::unique_ptr<LinkMonitor> links)
    : devices_(std::move(devices))
    , links_(std::move(links))
    , both_(epoll_create1(EPOLL_CLOEXEC))
{
    for (const DeviceEventSource *const source : {static_cast<DeviceEventSource *>(devices_.get()),
                                                  static_cast<DeviceEventSource *>(links_.get())}) {
        epoll_event readable{.events = EPOLLIN, .data = {}};
        if (source)
            epoll_ctl(both_.get(), EPOLL_CTL_ADD, source->descriptor(), &readable);
    }
}

DeviceEventSource::Reception HostEvents::receive(DeviceEvent &event)
{
    const Reception reception = devices_->receive(event);
    return reception == Reception::Nothing && links_ ? links_->receive(event) : reception;
}
