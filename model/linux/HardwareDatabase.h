// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/DeviceNames.h"

#include <vector>

// The hardware databases of this machine: the udev daemon's, and where that one knows nothing, the
// lists of PCI and USB devices. They are opened when the first name is asked for. Other databases
// can be given, the better ones first.
class HardwareDatabase : public DeviceNameSource
{
public:
    HardwareDatabase() = default; // this machine's
    explicit HardwareDatabase(std::vector<std::unique_ptr<DeviceNameSource>> sources);

    DeviceName nameOf(const QString &modalias) override;

private:
    std::vector<std::unique_ptr<DeviceNameSource>> sources_; // empty: not opened yet
};
