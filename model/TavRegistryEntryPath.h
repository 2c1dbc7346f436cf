// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/TavRegistryEntry.h"

// A plane and the entries on the way from one without parents, normally the root, down to an entry.
class TavRegistryEntryPath
{
public:
    explicit TavRegistryEntryPath(const QString &plane, std::vector<EntryRef> registryEntries = {});

    TavRegistryEntryPath mutableCopy() const { return *this; }
    TavRegistryEntryPath subpathOfLength(std::size_t length) const;
    void appendRegistryEntry(const EntryRef &entry);
    void prependRegistryEntry(const EntryRef &entry);

    const QString &plane() const { return plane_; }
    const std::vector<EntryRef> &registryEntries() const { return registryEntries_; }
    std::size_t length() const { return registryEntries_.size(); }
    const EntryRef &registryEntryAtIndex(std::size_t index) const
    {
        return registryEntries_[index];
    }
    EntryRef lastRegistryEntry() const; // null for an empty path
    bool containsRegistryEntry(const TavRegistryEntry &entry) const;

    int compareToEntryPath(const TavRegistryEntryPath &other) const; // -1, 0, 1
    // "(Plane)" for the root alone, "Plane:/" for its child, "Plane:/Name/Name@Location" below: the
    // root's child is left out. Null for an empty path.
    QString registryPath() const;
    QString description() const;

    friend bool operator==(const TavRegistryEntryPath &a, const TavRegistryEntryPath &b);

private:
    QString plane_;
    std::vector<EntryRef> registryEntries_;
};
