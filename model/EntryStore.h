// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/RegistryService.h"

#include <QStringList>

class TavRegistryEntry;

// What entries need from the store that owns them.
class EntryStore
{
public:
    enum ByteOrder : qint32 { ByteOrderUnknown = 0, LittleEndian = 1, BigEndian = 2 };

    virtual ~EntryStore() = default;

    virtual bool isLive() const = 0;
    virtual qint32 byteOrder() const = 0; // of the machine that was captured
    virtual const QStringList &registryPlanes() const = 0;
    // Null for a store that is not live.
    virtual RegistryService *service() const = 0;
    // Finds driver bundles on this machine, whatever machine the entries are from.
    virtual RegistryService *bundleService() const { return service(); }
    // The entry for a handle, or null. Handle 0 stands for the registry's root.
    virtual TavRegistryEntry *registryEntryForDxRegistryEntry(RegistryObject object,
                                                              bool createIfNeeded) = 0;
    virtual void setHasPendingTerminations(bool pending) = 0;
    // Called when a single entry was reread.
    virtual void noteObjectChanged(TavRegistryEntry &entry) = 0;

    // The numbers of entries, which index arrays beside them: each is below the limit.
    quint32 takeEntryNumber() { return entryNumberLimit_++; }
    quint32 entryNumberLimit() const { return entryNumberLimit_; }

protected:
    void restartEntryNumbers() { entryNumberLimit_ = 0; }

private:
    quint32 entryNumberLimit_ = 0;
};
