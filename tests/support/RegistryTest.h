// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "store/TavDataStore.h"
#include "tests/support/FakeLiveService.h"
#include "tests/support/QtPrinters.h"
#include "tests/support/TreeBuilder.h"
#include "tests/support/TreePrinter.h"
#include "tests/support/TreeText.h"

#include <gtest/gtest.h>

class CountingDelegate : public TavDataStoreDelegate
{
public:
    void fatalDxRegistryError() override { ++errors; }
    int errors = 0;
};

// A fixture with a scripted registry and a store that captures it. Every test ends by checking that
// all handles and iterators were released and none used after that.
class RegistryTest : public testing::Test
{
protected:
    using Node = FakeRegistry::Node;
    using Service = FakeRegistryService;

    void TearDown() override
    {
        store_.reset();
        EXPECT_EQ(service_.openHandles(), 0U);
        EXPECT_EQ(service_.openIterators(), 0U);
        EXPECT_EQ(service_.misuses(), 0U);
        EXPECT_EQ(service_.powerRegistrations(), 0U);
    }

    void capture(std::shared_ptr<TavDataStoreDelegate> delegate = nullptr)
    {
        store_ = TavDataStore::initFromDxRegistry(service_, std::move(delegate));
    }
    TavRegistryEntry *find(Node node) const
    {
        for (const EntryRef &entry : store_->registryEntries()) {
            if (entry->entryTag() == node)
                return entry.get();
        }
        return nullptr;
    }
    TavRegistryEntry &entry(const char *label) const
    {
        TavRegistryEntry *const found = find(tree_[label]);
        if (!found)
            qFatal("no entry %s", label);
        return *found;
    }
    static QStringList list(std::initializer_list<const char *> texts)
    {
        QStringList list;
        for (const char *text : texts)
            list.append(QString::fromLatin1(text));
        return list;
    }
    std::string printed(const QString &plane = QStringLiteral("DxService")) const
    {
        return TreePrinter::plane(*store_, plane);
    }

    const QString servicePlane = QStringLiteral("DxService");
    FakeLiveService service_;
    TreeBuilder tree_{service_};
    std::unique_ptr<TavDataStore> store_;
};
