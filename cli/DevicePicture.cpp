// SPDX-License-Identifier: Apache-2.0
#include "cli/DevicePicture.h"

#include "cli/EntrySummary.h"
#include "cli/commands/FindCommand.h"
#include "store/TavDataStore.h"

namespace {
const QString servicePlane = QStringLiteral("DxService");
const QString deviceClass = QStringLiteral("DxDevice");
const QString bindingClass = QStringLiteral("DxBinding");

QString driverOf(const TavRegistryEntry &device)
{
    for (const TavRegistryEntry *const child : device.childrenInPlane(servicePlane)) {
        if (child->inheritance().contains(bindingClass) && !child->hasTerminationDate())
            return child->nameInPlane(servicePlane);
    }
    return {};
}
} // namespace

DevicePicture::DevicePicture(TavDataStore &store, const FilterExpression *filter)
{
    EntrySet matches;
    if (filter)
        matches = FindCommand::matches(store, *filter);
    for (const EntryRef &entry : store.registryEntries()) {
        if (entry->hasTerminationDate() || !entry->inheritance().contains(deviceClass))
            continue;
        devices_.insert(entry->kernelPath(),
                        {entry->entryTag(), EntrySummary::path(*entry, servicePlane),
                         driverOf(*entry), entry->table(),
                         !filter || matches.contains(entry.get())});
    }
}

const DevicePicture::Device *DevicePicture::at(const QString &kernelPath) const
{
    const auto found = devices_.constFind(kernelPath);
    return found == devices_.constEnd() ? nullptr : &*found;
}
