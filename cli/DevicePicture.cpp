// SPDX-License-Identifier: Apache-2.0
#include "cli/DevicePicture.h"

#include "cli/EntrySummary.h"
#include "cli/RegistryNames.h"
#include "cli/commands/FindCommand.h"
#include "store/TavDataStore.h"

using namespace RegistryNames;

namespace {
QString driverOf(const TavRegistryEntry &device)
{
    for (const TavRegistryEntry *const child : device.childrenInPlane(servicePlane)) {
        if (child->inheritance().contains(bindingClass))
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
        const QString &className = entry->DxcoreClass();
        if (className == busClass || className == classClass)
            addSubsystem(EntryLocator::kernelName(*entry).toUtf8());
        else if (entry->inheritance().contains(deviceClass))
            add(entry->kernelPath(),
                {entry->entryTag(), EntrySummary::path(*entry, servicePlane), driverOf(*entry),
                 entry->table(), !filter || matches.contains(entry.get())});
    }
}

void DevicePicture::add(const QString &kernelPath, const Device &device)
{
    devices_.insert(kernelPath, device);
    kernelPaths_.insert(device.id, kernelPath);
}

const DevicePicture::Device *DevicePicture::at(const QString &kernelPath) const
{
    const auto found = devices_.constFind(kernelPath);
    return found == devices_.constEnd() ? nullptr : &*found;
}

const DevicePicture::Device *DevicePicture::withID(quint64 id) const
{
    const auto found = kernelPaths_.constFind(id);
    return found == kernelPaths_.constEnd() ? nullptr : at(*found);
}
