// SPDX-License-Identifier: Apache-2.0
#include "cli/PolledValues.h"

#include "cli/ObjectSampling.h"
#include "model/UpdatedTable.h"

void PolledValues::add(const QString &kernelPath, const DevicePicture::Device &device)
{
    DevicePicture::Device &added = devices_[kernelPath] = device;
    added.properties = {};
}

std::vector<DeviceChange> PolledValues::poll(RegistryService &service)
{
    std::vector<DeviceChange> changes;
    for (auto device = devices_.begin(); device != devices_.end(); ++device) {
        ObjectSample sample = sampleNow(service, {.kernelPath = device.key()});
        if (!sample.isThere)
            continue;
        const DevicePicture::Device before = *device;
        device->properties = RegistryValue::dictionary(std::move(sample.members));
        if (!before.properties.isNone() &&
            !before.properties.isSameCollectionAs(device->properties))
            changes.push_back({.action = DeviceChange::Action::Change,
                               .time = QDateTime::currentDateTimeUtc(),
                               .kernelPath = device.key(),
                               .before = before,
                               .after = *device});
    }
    return changes;
}

void PolledValues::reconcile(DeviceChange &change)
{
    const auto device = devices_.find(change.kernelPath);
    if (device == devices_.end() || !change.before || !change.after)
        return;
    change.before->properties =
        updatedTable(change.before->properties, device->properties.members());
    device->properties = updatedTable(device->properties, change.after->properties.members());
}
