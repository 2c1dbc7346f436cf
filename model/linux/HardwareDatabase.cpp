// SPDX-License-Identifier: Apache-2.0
#include "model/linux/HardwareDatabase.h"

#include "model/linux/IdsFileNames.h"
#include "model/linux/UdevHardwareNames.h"

HardwareDatabase::HardwareDatabase(std::vector<std::unique_ptr<DeviceNameSource>> sources)
    : sources_(std::move(sources))
{}

DeviceName HardwareDatabase::nameOf(const QString &modalias)
{
    if (sources_.empty()) {
        sources_.push_back(std::make_unique<UdevHardwareNames>());
        sources_.push_back(std::make_unique<IdsFileNames>(IdsFileNames::standardFolders()));
    }
    DeviceName name;
    for (const auto &source : sources_) {
        const bool isWhole =
            !name.model().isNull() && !name.vendor().isNull() && !name.className().isNull();
        if (!isWhole)
            name = name.completedBy(source->nameOf(modalias));
    }
    return name;
}
