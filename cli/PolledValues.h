// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "cli/DeviceChanges.h"

class RegistryService;

// The values of a few devices, read again and again beside the registry: most change without a
// message of the kernel.
class PolledValues
{
public:
    void add(const QString &kernelPath, const DevicePicture::Device &device);
    bool isEmpty() const { return devices_.isEmpty(); }
    // What changed since the poll before; nothing at the first one.
    std::vector<DeviceChange> poll(RegistryService &service);
    // Leaves out of a change what a poll has reported, and reports it no more itself.
    void reconcile(DeviceChange &change);

private:
    QHash<QString, DevicePicture::Device> devices_; // by kernel path, with the values read last
};
