// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/TavRegistryEntry.h"

#include <QCoreApplication>

class TavDataStore;

// The entries that an argument names: by a path in a plane, a plane, a kernel path, a device node,
// a kernel name, a modalias or a registry ID.
class EntryArgument
{
    Q_DECLARE_TR_FUNCTIONS(EntryArgument)
public:
    // Throws CommandError, with the nearest name, if there is none.
    EntryArgument(TavDataStore &store, const QString &text);

    const std::vector<TavRegistryEntry *> &entries() const { return entries_; }
    const QString &plane() const { return plane_; } // that it names; null: none

private:
    static QString nearest(const TavDataStore &store, const QString &text);
    static QString nearestPath(const TavDataStore &store, const QString &path);
    void orderEntries();

    std::vector<TavRegistryEntry *> entries_;
    QString plane_;
};
