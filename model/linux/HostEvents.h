// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/linux/DeviceMonitor.h"
#include "model/linux/FileDescriptor.h"
#include "model/linux/LinkMonitor.h"

// All events of the running kernel that are known of: those of devices, and changes of network
// interfaces.
class HostEvents : public DeviceEventSource
{
public:
    // Null when the events of devices cannot be received.
    static std::unique_ptr<HostEvents> open(bool isDaemonRunning);

    int descriptor() const override { return both_.get(); }
    Reception receive(DeviceEvent &event) override;

private:
    HostEvents(std::unique_ptr<DeviceMonitor> devices, std::unique_ptr<LinkMonitor> links);

    std::unique_ptr<DeviceMonitor> devices_;
    std::unique_ptr<LinkMonitor> links_; // null: cannot be opened
    FileDescriptor both_;
};
