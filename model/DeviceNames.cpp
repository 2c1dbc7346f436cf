// SPDX-License-Identifier: Apache-2.0
#include "model/DeviceNames.h"

DeviceNames::DeviceNames(std::unique_ptr<DeviceNameSource> source)
    : source_(std::move(source))
{}

DeviceNameRef DeviceNames::nameOf(const QString &modalias)
{
    if (modalias.isEmpty() || modalias.size() > maxModaliasSize)
        return none_;
    const std::lock_guard lock(mutex_);
    DeviceNameRef &known = known_[modalias];
    if (!known) {
        const DeviceName name = source_->nameOf(modalias);
        known = name.isEmpty() ? none_ : std::make_shared<DeviceName>(name);
    }
    return known;
}
