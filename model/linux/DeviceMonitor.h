// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/linux/DeviceEventSource.h"

#include <memory>

struct udev_monitor;

// The events of the running kernel: from the udev daemon once it has processed them, or from the
// kernel where no daemon runs.
class DeviceMonitor : public DeviceEventSource
{
public:
    static constexpr int largeBuffer = 128 << 20;

    // Null when it cannot be opened. The buffer gets the given size or the largest that the host
    // allows.
    static std::unique_ptr<DeviceMonitor> open(bool isDaemonRunning, int bufferSize = largeBuffer);

    int descriptor() const override;
    Reception receive(DeviceEvent &event) override;

private:
    struct Release
    {
        void operator()(udev_monitor *monitor) const;
    };
    using Monitor = std::unique_ptr<udev_monitor, Release>;

    explicit DeviceMonitor(Monitor monitor);

    Monitor monitor_;
};
