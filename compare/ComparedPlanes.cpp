// SPDX-License-Identifier: Apache-2.0
#include "compare/ComparedPlanes.h"

#include "store/TavDataStore.h"

QStringList ComparedPlanes::of(const TavDataStore &before, const TavDataStore &after)
{
    QStringList planes = after.registryPlanes() + before.registryPlanes();
    planes.prepend(service);
    planes.removeDuplicates();
    return planes;
}
