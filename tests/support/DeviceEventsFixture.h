// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/linux/LinuxRegistryService.h"
#include "platform/runloop/NotificationCenter.h"
#include "store/DataStoreNotifications.h"
#include "store/TavDataStore.h"
#include "tests/support/EventLoop.h"
#include "tests/support/MadeTree.h"
#include "tests/support/ScriptedEvents.h"
#include "tests/support/StorePrinter.h"

#include <gtest/gtest.h>

// A tree whose devices the test adds and removes, and a store that follows it by events.
class DeviceEventsFixture : public testing::Test
{
protected:
    DeviceEventsFixture()
    {
        device("devices/bus");
        device("devices/bus/old");
        trash_.folder("devices");
    }
    ~DeviceEventsFixture() override
    {
        observations_.clear();
        store_.reset();
        EXPECT_FALSE(events_.isOpen());
    }

    void follow(bool automatically)
    {
        service_ = *LinuxRegistryService::create(made_.sys());
        service_->setEventSourceFactory([this] { return events_.open(); });
        store_ = TavDataStore::initFromDxRegistry(*service_);
        store_->setAutoupdate(automatically);
        ASSERT_TRUE(events_.isOpen());
        for (const QString &name :
             {DataStoreNotifications::outOfDate, DataStoreNotifications::changed,
              DataStoreNotifications::objectsTerminated})
            observations_.push_back(NotificationCenter::defaultCenter().observe(
                name, store_.get(), [this](const auto &its) { ++posted_[its.name]; }));
    }
    void device(const QByteArray &path)
    {
        made_.file((path + "/uevent").constData(), "NUMBER=" + QByteArray::number(++number_));
    }
    // Kept elsewhere, so that its inode number is not reused.
    void remove(const QByteArray &path)
    {
        const QByteArray grave = trash_.path("devices/") + QByteArray::number(++number_);
        ASSERT_EQ(rename(made_.path(path.constData()).constData(), grave.constData()), 0);
    }
    // Away and back with the same inode number, like an interface between network namespaces.
    void leave() { move(made_, trash_); }
    void comeBack() { move(trash_, made_); }
    TavRegistryEntry *at(const char *path) const
    {
        const EntrySet found = store_->entriesMatchingRegistryPath(QString::fromUtf8(path)).entries;
        return found.size() == 1 ? found.values().constFirst() : nullptr;
    }
    bool isTerminated(const char *path) const
    {
        const TavRegistryEntry *const entry = at(path);
        return entry && entry->registryState() == RegistryStateTerminated;
    }
    bool waitForUpdate()
    {
        const int before = posted_.value(DataStoreNotifications::changed);
        return waitFor([&] { return posted_.value(DataStoreNotifications::changed) > before; });
    }
    bool updatesOn(QByteArrayView action, const QByteArray &path)
    {
        events_.send(action, path);
        return waitForUpdate();
    }
    std::string fresh() const
    {
        const auto service = *LinuxRegistryService::create(made_.sys());
        return StorePrinter::registry(*TavDataStore::initFromDxRegistry(*service));
    }

    static constexpr const char *wanderer = "devices/wanderer";

    static void move(const MadeTree &from, const MadeTree &to)
    {
        ASSERT_EQ(rename(from.path(wanderer).constData(), to.path(wanderer).constData()), 0);
    }

    MadeTree made_;
    MadeTree trash_;
    int number_ = 0;
    ScriptedEvents events_;
    std::unique_ptr<LinuxRegistryService> service_;
    std::unique_ptr<TavDataStore> store_;
    QHash<QString, int> posted_;
    std::vector<NotificationCenter::Observation> observations_;
};
