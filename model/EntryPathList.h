// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/TavRegistryEntryPath.h"

// The paths of an entry in a plane, in order, for showing to the user. Where there are more than
// anyone reads, only paths that add up to about 100,000 entries are listed.
class EntryPathList
{
public:
    EntryPathList(TavRegistryEntry &entry, const QString &plane);

    const std::vector<TavRegistryEntryPath> &paths() const { return paths_; }
    bool isWhole() const { return isWhole_; }
    // A path that is not listed is inserted in order.
    void add(const TavRegistryEntryPath &path);

    // Those of the entry's paths with this text: "Plane:/Name/Name@Location".
    static std::vector<TavRegistryEntryPath> writtenAs(TavRegistryEntry &entry,
                                                       const QString &registryPath);

private:
    std::vector<TavRegistryEntryPath> paths_;
    bool isWhole_;
};
