#pragma once

#include "model/TavRegistryEntryPath.h"

// The paths of an entry in a plane as a list for people has them, in the paths' order. Where they
// would be more than anyone reads, those that add up to some 100,000 entries are listed.
class EntryPathList
{
public:
    EntryPathList(TavRegistryEntry &entry, const QString &plane);

    const std::vector<TavRegistryEntryPath> &paths() const { return paths_; }
    bool isWhole() const { return isWhole_; }
    // One that is not listed takes its place in the order.
    void add(const TavRegistryEntryPath &path);

    // Of the entry's paths, those that are written so: "Plane:/Name/Name@Location".
    static std::vector<TavRegistryEntryPath> writtenAs(TavRegistryEntry &entry,
                                                       const QString &registryPath);

private:
    std::vector<TavRegistryEntryPath> paths_;
    bool isWhole_;
};
