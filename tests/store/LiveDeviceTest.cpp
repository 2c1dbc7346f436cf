// The running kernel's own devices: virtual ones come and go, and a driver leaves one and returns.
#include "model/linux/DeviceMonitor.h"
#include "model/linux/LinuxRegistryService.h"
#include "platform/NotificationCenter.h"
#include "store/TavDataStore.h"
#include "tests/support/EventLoop.h"
#include "tests/support/RegistryText.h"
#include "tests/support/VirtualDisk.h"
#include "tests/support/VirtualInterface.h"

#include <QDir>
#include <gtest/gtest.h>

namespace {
const QString outOfDate = QStringLiteral("Data store out of date");
const QString changed = QStringLiteral("Data store changed");
const QString terminated = QStringLiteral("Data store objects terminated");

bool write(const QString &file, const QByteArray &text)
{
    QFile control(file);
    return control.open(QIODevice::WriteOnly | QIODevice::Unbuffered) &&
           control.write(text) == text.size();
}

// What comes and goes.
class Comer
{
public:
    virtual ~Comer() = default;
    virtual bool come() = 0;
    virtual void go() = 0;
    virtual const char *missing() const = 0;
    QString name;
    QString className;
};

class Disk : public Comer
{
public:
    bool come() override
    {
        disk_.emplace();
        name = QString::fromLatin1(disk_->name());
        className = QStringLiteral("DxBlockDisk");
        return disk_->exists();
    }
    void go() override { disk_.reset(); }
    const char *missing() const override
    {
        return "no virtual disk can be added here (needs root and the zram module)";
    }

private:
    std::optional<VirtualDisk> disk_;
};

class Interface : public Comer
{
public:
    bool come() override
    {
        interface_.emplace();
        name = interface_->name();
        className = QStringLiteral("DxNetDevice");
        return interface_->exists();
    }
    void go() override { interface_.reset(); }
    const char *missing() const override
    {
        return "no network interface can be added here (needs root and iproute2)";
    }

private:
    std::optional<VirtualInterface> interface_;
};

// A source of random numbers has no users that would miss it for a moment.
class Driver : public Comer
{
public:
    Driver()
    {
        name = QStringLiteral("virtio_rng");
        className = QStringLiteral("DxBinding");
        device_ = folder_.entryList({QStringLiteral("virtio*")}, QDir::Dirs).value(0);
        go();
    }
    ~Driver() override { come(); }
    bool come() override { return !device_.isEmpty() && control("bind"); }
    void go() override
    {
        if (!device_.isEmpty())
            control("unbind");
    }
    const char *missing() const override { return "no driver that may be unbound is here"; }

private:
    bool control(const char *file)
    {
        return write(folder_.filePath(QString::fromLatin1(file)), device_.toLatin1());
    }

    QDir folder_{QStringLiteral("/sys/bus/virtio/drivers/virtio_rng")};
    QString device_;
};

class LiveDeviceTest : public testing::TestWithParam<const char *>
{
protected:
    void SetUp() override
    {
        const std::string kind = GetParam();
        if (kind == "Disk")
            comer_ = std::make_unique<Disk>();
        else if (kind == "Interface")
            comer_ = std::make_unique<Interface>();
        else
            comer_ = std::make_unique<Driver>();
        const bool canCome = comer_->come();
        comer_->go();
        if (!canCome)
            GTEST_SKIP() << comer_->missing();
        QString error;
        service_ = LinuxRegistryService::create(QStringLiteral("/sys"), &error);
        store_ = TavDataStore::initFromDxRegistry(*service_);
        for (const QString &name : {outOfDate, changed, terminated})
            observations_.push_back(NotificationCenter::defaultCenter().observe(
                name, store_.get(), [this](const auto &its) {
                    ++posted_[its.name];
                    // Another device may bring a second update before anybody looks.
                    wasNew_ = wasNew_ || isThere(RegistryStateNew);
                }));
    }

    TavRegistryEntry *entry() const
    {
        for (const EntryRef &entry : store_->registryEntries()) {
            if (entry->nameInPlane({}) == comer_->name &&
                entry->isKindOfDxcoreClass(comer_->className, false))
                return entry.get();
        }
        return nullptr;
    }
    bool isThere(RegistryState state) const { return entry() && entry()->registryState() == state; }

    std::unique_ptr<Comer> comer_;
    std::unique_ptr<LinuxRegistryService> service_;
    std::unique_ptr<TavDataStore> store_;
    QHash<QString, int> posted_;
    bool wasNew_ = false;
    std::vector<NotificationCenter::Observation> observations_;
};

TEST_P(LiveDeviceTest, IsFollowedAutomatically)
{
    store_->setAutoupdate(true);
    comer_->come();
    ASSERT_TRUE(waitFor([&] { return wasNew_; }));
    const quint64 tag = entry()->entryTag();
    store_->update();
    EXPECT_TRUE(isThere(RegistryStateUnchanged));
    comer_->go();
    ASSERT_TRUE(waitFor([&] { return isThere(RegistryStateTerminated); }));
    EXPECT_EQ(entry()->entryTag(), tag);
    EXPECT_GT(posted_.value(terminated), 0);
    EXPECT_EQ(posted_.value(outOfDate), 0);
    store_->clearTerminatedObjects();
    EXPECT_FALSE(entry());
}

TEST_P(LiveDeviceTest, IsToldOfAndShownByTheNextUpdate)
{
    comer_->come();
    ASSERT_TRUE(waitFor([&] { return posted_.value(outOfDate) > 0; }));
    turnEventLoopFor(500);
    EXPECT_EQ(posted_.value(changed), 0);
    EXPECT_FALSE(store_->isUpToDate() || entry());
    store_->update();
    EXPECT_TRUE(isThere(RegistryStateNew));
    store_->update();
    EXPECT_TRUE(isThere(RegistryStateUnchanged));

    comer_->go();
    ASSERT_TRUE(waitFor([&] { return entry()->DxRegistryEntry() == 0; }));
    EXPECT_TRUE(isThere(RegistryStateUnchanged));
    EXPECT_FALSE(store_->isUpToDate());
    store_->update();
    EXPECT_TRUE(isThere(RegistryStateTerminated));
    EXPECT_GT(posted_.value(terminated), 0);
    store_->clearTerminatedObjects();
    EXPECT_FALSE(entry());
}

INSTANTIATE_TEST_SUITE_P(Kinds, LiveDeviceTest, testing::Values("Disk", "Interface", "Driver"),
                         [](const auto &its) { return std::string(its.param); });

// Far more events than the monitor's buffer holds, none of them read meanwhile.
TEST(LiveStorm, OverflowEndsAsAFreshCapture)
{
    if (!VirtualDisk().exists())
        GTEST_SKIP() << "no virtual disk can be added here (needs root and the zram module)";
    QString error;
    const auto service = LinuxRegistryService::create(QStringLiteral("/sys"), &error);
    service->setEventSourceFactory([] { return DeviceMonitor::open(false, 1); });
    const auto store = TavDataStore::initFromDxRegistry(*service);
    store->setAutoupdate(true);
    std::vector<std::unique_ptr<VirtualDisk>> disks;
    disks.reserve(40);
    for (int i = 0; i < 40; ++i)
        disks.push_back(std::make_unique<VirtualDisk>());
    for (int i = 0; i < 200; ++i) {
        disks[static_cast<std::size_t>(i) % disks.size()] = std::make_unique<VirtualDisk>();
        if (i % 50 == 0)
            turnEventLoopFor(100);
    }
    const auto agrees = [&] {
        store->clearTerminatedObjects();
        const auto other = LinuxRegistryService::create(QStringLiteral("/sys"), &error);
        const auto fresh = TavDataStore::initFromDxRegistry(*other);
        // Children are sorted by the names they had: a first reading knows those of one plane only.
        fresh->update();
        for (const EntryRef &entry : store->registryEntries())
            entry->clearIsNew();
        return RegistryText::planes(*store) == RegistryText::planes(*fresh);
    };
    EXPECT_TRUE(waitFor(agrees));
    disks.clear();
    EXPECT_TRUE(waitFor(agrees));
}

TEST(DeviceMonitor, TellsAnOverflowFromSilence)
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
            GTEST_SKIP() << "no virtual disk can be added here (needs root and the zram module)";
    }
    int losses = 0;
    reception = monitor->receive(event);
    for (; reception != DeviceEventSource::Reception::Nothing; reception = monitor->receive(event))
        losses += reception == DeviceEventSource::Reception::Loss;
    EXPECT_GE(losses, 1);
}
} // namespace
