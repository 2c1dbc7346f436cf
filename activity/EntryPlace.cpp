// SPDX-License-Identifier: Apache-2.0
#include "activity/EntryPlace.h"

#include "model/TavRegistryEntry.h"
#include "model/TavRegistryEntryPath.h"

EntryPlace EntryPlace::of(TavRegistryEntry &entry)
{
    static const QString servicePlane = QStringLiteral("DxService");
    const auto &planes = entry.facts().parentsInPlanes;
    const QString plane =
        planes.find(servicePlane) || planes.isEmpty() ? servicePlane : planes.begin()->plane();
    const auto path = entry.entryPathInPlane(plane, 0);
    return {entry.nameAtLocationInPlane(plane), path ? path->registryPath() : QString()};
}
