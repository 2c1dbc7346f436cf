#pragma once

#include "model/RegistryService.h"

#include <QStringList>

class TavRegistryEntry;

// What entries ask of the store that owns them.
class EntryStore
{
public:
    enum ByteOrder : qint32 { ByteOrderUnknown = 0, LittleEndian = 1, BigEndian = 2 };

    virtual ~EntryStore() = default;

    virtual bool isLive() const = 0;
    virtual qint32 byteOrder() const = 0; // of the machine the snapshot was taken on
    virtual const QStringList &registryPlanes() const = 0;
    // The service that a live store reads from; a store that is not live has none.
    virtual RegistryService *service() const = 0;
    // Whom to ask where this machine has a driver bundle, whatever machine the entries are of.
    virtual RegistryService *bundleService() const { return service(); }
    // The entry for a handle, or null. Handle 0 stands for the registry's root.
    virtual TavRegistryEntry *registryEntryForDxRegistryEntry(RegistryObject object,
                                                              bool createIfNeeded) = 0;
    virtual void setHasPendingTerminations(bool pending) = 0;
    // An entry was re-read by itself.
    virtual void noteObjectChanged(TavRegistryEntry &entry) = 0;

    // The numbers of entries, which index arrays beside them: each is below the limit.
    quint32 takeEntryNumber() { return entryNumberLimit_++; }
    quint32 entryNumberLimit() const { return entryNumberLimit_; }

protected:
    void restartEntryNumbers() { entryNumberLimit_ = 0; }

private:
    quint32 entryNumberLimit_ = 0;
};
