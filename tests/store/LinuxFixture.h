// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/linux/LinuxRegistryService.h"
#include "store/TavDataStore.h"

#include <QDir>
#include <gtest/gtest.h>

// A sysfs tree captured into a store.
struct CapturedTree
{
    std::unique_ptr<LinuxRegistryService> service;
    std::unique_ptr<TavDataStore> store;

    CapturedTree() = default;
    CapturedTree(CapturedTree &&) = default;
    CapturedTree &operator=(CapturedTree &&other) noexcept
    {
        store = std::move(other.store); // first, for a store needs its service to the end
        service = std::move(other.service);
        return *this;
    }

    static CapturedTree capture(const QString &sysfs, TreeReader::Options options = {})
    {
        CapturedTree tree;
        auto service = LinuxRegistryService::create(sysfs, options);
        EXPECT_TRUE(service) << service.error().message().toStdString();
        if (!service)
            return tree;
        tree.service = std::move(*service);
        tree.store = TavDataStore::initFromDxRegistry(*tree.service);
        return tree;
    }
    static CapturedTree fixture(const char *name)
    {
        return capture(QStringLiteral(VANDREL_SOURCE_DIR "/tests/fixtures/%1/sys")
                           .arg(QString::fromLatin1(name)));
    }

    // The only entry at a path, or null.
    TavRegistryEntry *at(const char *path) const
    {
        const EntrySet entries =
            store->entriesMatchingRegistryPath(QString::fromUtf8(path)).entries;
        return entries.size() == 1 ? entries.values().constFirst() : nullptr;
    }
    static RegistryValue value(const TavRegistryEntry *entry, QStringView key)
    {
        const auto *node = entry && entry->properties()
                               ? entry->properties()->childWithName(key.toString())
                               : nullptr;
        return node ? node->value() : RegistryValue();
    }
};
