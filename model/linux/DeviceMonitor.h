#pragma once

#include "model/linux/DeviceEventSource.h"

#include <memory>

struct udev_monitor;

// The events of the running kernel: by the udev daemon, once it is done with each, or where none
// runs by the kernel itself.
class DeviceMonitor : public DeviceEventSource
{
public:
    static constexpr int largeBuffer = 128 << 20;

    // Null when it cannot be opened. The buffer is as large as the host allows up to the size.
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
