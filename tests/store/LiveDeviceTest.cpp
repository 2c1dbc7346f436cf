// SPDX-License-Identifier: Apache-2.0
// Devices of the running kernel: virtual ones come and go, and a driver unbinds and rebinds.
#include "model/linux/DeviceMonitor.h"
#include "model/linux/LinuxRegistryService.h"
#include "platform/runloop/NotificationCenter.h"
#include "store/DataStoreNotifications.h"
#include "store/TavDataStore.h"
#include "tests/support/EventLoop.h"
#include "tests/support/VirtualDisk.h"
#include "tests/support/VirtualInterface.h"
#include "tests/support/VirtualNamespace.h"

#include <QDir>
#include <gtest/gtest.h>

using namespace DataStoreNotifications;

namespace {
// What comes and goes.
struct Comer
{
    QString className;
    const char *missing;
    std::function<QByteArray()> come; // returns its name, or null if it cannot be added
    std::function<void()> go;
};

template<class Virtual>
Comer virtualComer(const QString &className)
{
    const auto its = std::make_shared<std::optional<Virtual>>();
    return {className, Virtual::missing,
            [its] { return its->emplace().exists() ? (*its)->name() : QByteArray(); },
            [its] { its->reset(); }};
}

// A random number source can be unbound for a moment without harm.
Comer driver()
{
    const QDir folder(QStringLiteral("/sys/bus/virtio/drivers/virtio_rng"));
    const QString device = folder.entryList({QStringLiteral("virtio*")}, QDir::Dirs).value(0);
    const auto tell = [=](const char *file) {
        QFile control(folder.filePath(QString::fromLatin1(file)));
        return !device.isEmpty() && control.open(QIODevice::WriteOnly | QIODevice::Unbuffered) &&
               control.write(device.toLatin1()) > 0;
    };
    // Rebinds it after the test.
    const std::shared_ptr<void> end(nullptr, [tell](void *) { tell("bind"); });
    tell("unbind");
    return {QStringLiteral("DxBinding"), "no driver that may be unbound is here",
            [tell, end] { return tell("bind") ? QByteArray("virtio_rng") : QByteArray(); },
            [tell] { tell("unbind"); }};
}

class LiveDeviceTest : public testing::TestWithParam<const char *>
{
protected:
    void SetUp() override
    {
        const std::string kind = GetParam();
        comer_ = kind == "Disk" ? virtualComer<VirtualDisk>(QStringLiteral("DxBlockDisk"))
                 : kind == "Interface"
                     ? virtualComer<VirtualInterface>(QStringLiteral("DxNetDevice"))
                     : driver();
        const bool canCome = !comer_.come().isEmpty();
        comer_.go();
        if (!canCome)
            GTEST_SKIP() << comer_.missing;
        service_ = *LinuxRegistryService::create(QStringLiteral("/sys"));
        store_ = TavDataStore::initFromDxRegistry(*service_);
        for (const QString &name : {outOfDate, changed, objectsTerminated})
            observations_.push_back(NotificationCenter::defaultCenter().observe(
                name, store_.get(), [this](const auto &its) {
                    ++posted_[its.name];
                    // Another device may cause a second update first.
                    wasNew_ = wasNew_ || isThere(RegistryStateNew);
                }));
    }
    void come() { name_ = QString::fromLatin1(comer_.come()); }
    TavRegistryEntry *entry() const
    {
        for (const EntryRef &entry : store_->registryEntries()) {
            if (entry->nameInPlane({}) == name_ &&
                entry->isKindOfDxcoreClass(comer_.className, false))
                return entry.get();
        }
        return nullptr;
    }
    bool isThere(RegistryState state) const { return entry() && entry()->registryState() == state; }

    Comer comer_;
    QString name_;
    std::unique_ptr<LinuxRegistryService> service_;
    std::unique_ptr<TavDataStore> store_;
    QHash<QString, int> posted_;
    bool wasNew_ = false;
    std::vector<NotificationCenter::Observation> observations_;
};

TEST_P(LiveDeviceTest, IsReportedAndShownByTheNextUpdateOrAutomatically)
{
    come();
    ASSERT_TRUE(waitFor([&] { return posted_.value(outOfDate) > 0; }));
    turnEventLoopFor(500);
    EXPECT_EQ(posted_.value(changed), 0);
    EXPECT_FALSE(store_->isUpToDate() || entry());
    store_->update();
    EXPECT_TRUE(isThere(RegistryStateNew));
    store_->update();
    EXPECT_TRUE(isThere(RegistryStateUnchanged));
    comer_.go();
    ASSERT_TRUE(waitFor([&] { return entry()->DxRegistryEntry() == 0; }));
    EXPECT_TRUE(isThere(RegistryStateUnchanged));
    EXPECT_FALSE(store_->isUpToDate());
    store_->update();
    EXPECT_TRUE(isThere(RegistryStateTerminated));
    EXPECT_GT(posted_.value(objectsTerminated), 0);
    store_->clearTerminatedObjects();
    EXPECT_FALSE(entry());

    store_->setAutoupdate(true);
    posted_.clear();
    wasNew_ = false;
    come();
    ASSERT_TRUE(waitFor([&] { return wasNew_; }));
    const quint64 tag = entry()->entryTag();
    comer_.go();
    ASSERT_TRUE(waitFor([&] { return isThere(RegistryStateTerminated); }));
    EXPECT_EQ(entry()->entryTag(), tag);
    EXPECT_GT(posted_.value(objectsTerminated), 0);
    EXPECT_EQ(posted_.value(outOfDate), 0);
}

// An interface keeps its node in another network namespace and still has it when it returns.
TEST(LiveDeviceReturn, FromAnotherNamespaceIsANewObject)
{
    const VirtualInterface interface;
    const VirtualNamespace other;
    if (!interface.exists() || !other.exists())
        GTEST_SKIP() << VirtualNamespace::missing;
    const auto service = *LinuxRegistryService::create(QStringLiteral("/sys"));
    const auto store = TavDataStore::initFromDxRegistry(*service);
    const auto liveTag = [&] {
        for (const EntryRef &entry : store->registryEntries()) {
            if (entry->nameInPlane({}) == QString::fromLatin1(interface.name()) &&
                entry->DxRegistryEntry())
                return entry->entryTag();
        }
        return quint64(0);
    };
    QSet<quint64> tags{liveTag()};
    for (const bool automatically : {false, true, false}) {
        store->setAutoupdate(automatically);
        ASSERT_TRUE(other.take(interface.name()));
        ASSERT_TRUE(waitFor([&] { return liveTag() == 0; }));
        if (automatically)
            store->update();
        ASSERT_TRUE(other.giveBack(interface.name()));
        ASSERT_TRUE(waitFor([&] {
            if (!automatically)
                store->update();
            return liveTag() != 0;
        }));
        EXPECT_FALSE(tags.contains(liveTag()));
        tags.insert(liveTag());
    }
}

INSTANTIATE_TEST_SUITE_P(Kinds, LiveDeviceTest, testing::Values("Disk", "Interface", "Driver"),
                         [](const auto &its) { return std::string(its.param); });

TEST(DeviceMonitor, DistinguishesOverflowFromSilence)
{
    const auto monitor = DeviceMonitor::open(false, 1);
    ASSERT_TRUE(monitor);
    DeviceEvent event;
    auto reception = monitor->receive(event);
    while (reception == DeviceEventSource::Reception::Event) // of other devices
        reception = monitor->receive(event);
    EXPECT_EQ(reception, DeviceEventSource::Reception::Nothing);
    for (int i = 0; i < 20; ++i) {
        if (!VirtualDisk().exists())
            GTEST_SKIP() << VirtualDisk::missing;
    }
    int losses = 0;
    reception = monitor->receive(event);
    for (; reception != DeviceEventSource::Reception::Nothing; reception = monitor->receive(event))
        losses += reception == DeviceEventSource::Reception::Loss;
    EXPECT_GE(losses, 1);
}
} // namespace
