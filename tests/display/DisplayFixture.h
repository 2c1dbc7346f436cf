// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "display/TavPropertyOutlineItem.h"
#include "model/EntryStore.h"
#include "model/TavRegistryEntry.h"
#include "tests/support/FakeRegistryService.h"

#include <QTemporaryDir>

// A store of one machine with a chosen byte order.
class MachineStore : public EntryStore
{
public:
    explicit MachineStore(qint32 byteOrder = LittleEndian)
        : byteOrder_(byteOrder)
    {}
    // Adds an entry with these classes, own class first, and the property "Value".
    EntryRef entry(const QStringList &inheritance, const RegistryValue &value);

    bool isLive() const override { return true; }
    qint32 byteOrder() const override { return byteOrder_; }
    const QStringList &registryPlanes() const override { return planes_; }
    RegistryService *service() const override { return &service_; }
    TavRegistryEntry *registryEntryForDxRegistryEntry(RegistryObject, bool) override
    {
        return nullptr;
    }
    void setHasPendingTerminations(bool) override {}
    void noteObjectChanged(TavRegistryEntry &) override {}

private:
    qint32 byteOrder_;
    QStringList planes_;
    mutable FakeRegistryService service_;
};

// Preferences in a temporary folder, with the defaults registered.
class PreferencesFolder
{
public:
    PreferencesFolder() { restart(); }
    ~PreferencesFolder();
    void restart(); // writes changes and reads them again
    QString path() const { return folder_.path(); }

private:
    QTemporaryDir folder_;
};

// A single item with a value, on a machine with the byte order.
class LoneItem
{
public:
    explicit LoneItem(const RegistryValue &value, qint32 byteOrder = EntryStore::LittleEndian);
    TavPropertyOutlineItem *operator->() const { return item_; }
    TavPropertyOutlineItem &operator*() const { return *item_; }

private:
    MachineStore store_;
    EntryRef entry_;
    TavPropertyOutlineItem *item_;
};

// Finds an item by keys and indexes, such as "Value/list/0".
TavPropertyOutlineItem &itemAt(const EntryRef &entry, const char *path);
PropertyFormatOptions formatOf(const char *descriptor);
