// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/TavRegistryEntry.h"

#include <span>

// Finds the entries of a store by the names that Linux gives devices: kernel paths through any
// link, device nodes, kernel names, modaliases and registry IDs. Valid until an entry changes.
class EntryLocator
{
public:
    explicit EntryLocator(std::span<const EntryRef> entries); // which must outlive it

    // The entry with exactly this path, such as "/sys/bus/pci"; null: none.
    TavRegistryEntry *atKernelPath(const QString &path) const { return byPath_.value(path); }
    // What the value of a link leads to, such as "bus/pci"; null: it is not the path of an entry.
    TavRegistryEntry *atLink(const QString &link) const;
    // The entries that the text names. Exact kernel names come before other meanings.
    std::vector<TavRegistryEntry *> find(const QString &text) const;
    // The entry that has the attribute at a path such as "/sys/class/net/lo/mtu", if there is such
    // an attribute; null: none can have it.
    TavRegistryEntry *possibleOwner(const QString &path) const;
    // At most maxCandidates texts that begin with this one, which find() understands; unsorted.
    QStringList candidates(const QString &text) const;
    static constexpr qsizetype maxCandidates = 500;

    static QString kernelName(const TavRegistryEntry &entry); // null: none
    static QString deviceNode(const TavRegistryEntry &entry); // such as "/dev/sda"; null: none

private:
    struct Place
    {
        TavRegistryEntry *nearest = nullptr;
        QString below; // the first folder below it; empty: the path ends at the entry
    };

    TavRegistryEntry *atPathThroughLinks(const QString &path) const;
    Place placeOf(const QString &path) const;
    TavRegistryEntry *memberOf(const QString &folder, const QString &name) const;
    QString step(const QString &folder, const QString &name) const;
    std::vector<TavRegistryEntry *> named(const QString &text) const;

    std::span<const EntryRef> entries_;
    QHash<QString, TavRegistryEntry *> byPath_;
};
