// SPDX-License-Identifier: Apache-2.0
#include "model/linux/DeviceMonitor.h"

#include "model/ModelLogging.h"

#include <cerrno>
#include <cstring>
#include <libudev.h>

namespace {
struct ReleaseDevice
{
    void operator()(udev_device *device) const { udev_device_unref(device); }
};
using Device = std::unique_ptr<udev_device, ReleaseDevice>;
} // namespace

void DeviceMonitor::Release::operator()(udev_monitor *monitor) const
{
    udev_monitor_unref(monitor);
}

DeviceMonitor::DeviceMonitor(Monitor monitor)
    : monitor_(std::move(monitor))
{}

std::unique_ptr<DeviceMonitor> DeviceMonitor::open(bool isDaemonRunning, int bufferSize)
{
    udev *const library = udev_new();
    if (!library)
        return nullptr;
    Monitor monitor(udev_monitor_new_from_netlink(library, isDaemonRunning ? "udev" : "kernel"));
    udev_unref(library); // the monitor holds a reference
    if (!monitor)
        return nullptr;
    udev_monitor_set_receive_buffer_size(monitor.get(), bufferSize);
    if (udev_monitor_enable_receiving(monitor.get()) < 0)
        return nullptr;
    return std::unique_ptr<DeviceMonitor>(new DeviceMonitor(std::move(monitor)));
}

int DeviceMonitor::descriptor() const
{
    return udev_monitor_get_fd(monitor_.get());
}

DeviceEventSource::Reception DeviceMonitor::receive(DeviceEvent &event)
{
    errno = 0;
    if (const Device device{udev_monitor_receive_device(monitor_.get())}) {
        auto received = DeviceEvent::fromDevice(device.get());
        if (!received)
            return Reception::Loss;
        event = std::move(*received);
        return Reception::Event;
    }
    if (errno == 0 || errno == EAGAIN || errno == EINTR)
        return Reception::Nothing;
    // The socket's buffer was full, or a message is unreadable: events are lost.
    qCDebug(modelLog, "Device events were lost: %s", std::strerror(errno));
    return Reception::Loss;
}
