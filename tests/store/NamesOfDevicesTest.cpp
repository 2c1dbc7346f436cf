// SPDX-License-Identifier: Apache-2.0
#include "platform/runloop/NotificationCenter.h"
#include "store/DataStoreDecoder.h"
#include "store/DataStoreNotifications.h"
#include "tests/support/EncodedStore.h"
#include "tests/support/EventLoop.h"
#include "tests/support/LogCapture.h"
#include "tests/support/RegistryTest.h"
#include "tests/support/RegistryValues.h"
#include "tests/support/ScriptedNames.h"
#include "tests/support/SmallStore.h"

using namespace values;

namespace {
class NamesOfDevices : public RegistryTest
{
protected:
    NamesOfDevices()
    {
        tree_.plane("DxService", "Root\n  Host\n    eth@0\n    eth@1\n    disk\n");
        tree_.plane("DxBus", "Root\n  Host\n    eth@0\n");
        service_.setName(tree_["eth@0"], "net", "DxBus");
        service_.setProperties(tree_["eth@0"], dictionary({{"modalias", text("pci:1")}}));
        service_.setProperties(tree_["eth@1"], dictionary({{"modalias", text("pci:1")}}));
        service_.setProperties(tree_["disk"], dictionary({{"modalias", text("scsi:2")}}));
        const DeviceName adapter(QStringLiteral("LN-210"), QStringLiteral("Example"),
                                 QStringLiteral("Ethernet controller"));
        service_.setDeviceNames(ScriptedNames::create(
            {{QStringLiteral("pci:1"), adapter},
             {QStringLiteral("pci:3"), DeviceName(QStringLiteral("Other"), {}, {})}},
            record_));
        capture();
        found_ = NotificationCenter::defaultCenter().observe(
            DataStoreNotifications::deviceNamesFound, store_.get(),
            [this](const auto &) { ++announcements_; });
    }

    std::string nameOf(const char *label) const
    {
        const DeviceName *const name = entry(label).deviceName();
        return name ? name->description().toStdString() : std::string();
    }
    void lookUp()
    {
        store_->lookUpDeviceNames();
        ASSERT_TRUE(waitFor([this] { return announcements_ > 0; }));
    }
    int matches(const char *query, FindOptions options) const
    {
        EntrySet found;
        store_->runQuery(QString::fromUtf8(query), options, &found, nullptr);
        return static_cast<int>(found.size());
    }

    std::shared_ptr<ScriptedNames::Record> record_ = std::make_shared<ScriptedNames::Record>();
    NotificationCenter::Observation found_;
    int announcements_ = 0;
};
} // namespace

TEST_F(NamesOfDevices, AreLookedUpOnAnotherThreadAndLeaveThePropertiesAlone)
{
    EXPECT_TRUE(record_->asked.isEmpty()); // not while capturing
    lookUp();
    EXPECT_EQ(record_->asked.size(), 2); // each kind once
    EXPECT_FALSE(record_->threads.contains(QThread::currentThread()));
    EXPECT_EQ(nameOf("eth@0"), "Example LN-210 — Ethernet controller");
    EXPECT_EQ(nameOf("eth@1"), nameOf("eth@0"));
    EXPECT_EQ(nameOf("disk"), "");
    EXPECT_EQ(entry("eth@0").properties()->numberOfChildren(), 1);
    store_->lookUpDeviceNames();
    turnEventLoopFor(20);
    EXPECT_EQ(announcements_, 1); // nothing was left to look up
}

TEST_F(NamesOfDevices, FollowADeviceThatIsReplaced)
{
    lookUp();
    service_.setProperties(tree_["eth@0"],
                           dictionary({{"modalias", text("pci:3")}, {"mtu", number(1)}}));
    service_.setProperties(tree_["eth@1"],
                           dictionary({{"modalias", text("pci:1")}, {"mtu", number(1)}}));
    store_->update();
    EXPECT_EQ(nameOf("eth@0"), "");
    EXPECT_EQ(nameOf("eth@1"), "Example LN-210 — Ethernet controller");
    store_->lookUpDeviceNamesNow();
    EXPECT_EQ(nameOf("eth@0"), "Other");
}

TEST_F(NamesOfDevices, MayComeWhenTheStoreIsGone)
{
    store_->lookUpDeviceNames();
    store_.reset();
    turnEventLoopFor(20);
    EXPECT_EQ(announcements_, 0);
}

TEST_F(NamesOfDevices, AreFoundInEveryPlane)
{
    EXPECT_EQ(matches("ln-2", FindOption::Name), 0);
    store_->lookUpDeviceNamesNow();
    EXPECT_EQ(matches("ln-2", FindOption::Name), 2);
    EXPECT_EQ(matches("EXAMPLE LN", FindOptions()), 2);
    EXPECT_EQ(matches("ln-2", FindOption::Class | FindOption::Values), 0);
    EXPECT_EQ(matches("disk", FindOption::Name), 1);
    QHash<QString, EntrySet> parents;
    store_->runQuery(QStringLiteral("ln-2"), FindOption::Name, nullptr, &parents);
    EXPECT_EQ(parents.value(QStringLiteral("DxBus")).size(), 2);
    EXPECT_EQ(parents.value(servicePlane).size(), 2);
}

TEST_F(NamesOfDevices, AreKeptInASnapshot)
{
    store_->lookUpDeviceNamesNow();
    const auto reopened = DataStoreDecoder::decode(encoded(*store_));
    ASSERT_TRUE(reopened);
    EXPECT_EQ(reopened->registryEntries().size(), store_->registryEntries().size());
    for (std::size_t i = 0; i < reopened->registryEntries().size(); ++i) {
        const DeviceName *const before = store_->registryEntries()[i]->deviceName();
        const DeviceName *const after = reopened->registryEntries()[i]->deviceName();
        ASSERT_EQ(after != nullptr, before != nullptr);
        EXPECT_TRUE(!after ||
                    (after->model() == before->model() && after->vendor() == before->vendor() &&
                     after->className() == before->className()));
    }
    // What it holds is not looked up again, the rest is.
    record_->asked.clear();
    service_.setDeviceNames(ScriptedNames::create({}, record_));
    reopened->setBundleService(service_);
    reopened->lookUpDeviceNamesNow();
    EXPECT_EQ(record_->asked, QStringList{QStringLiteral("scsi:2")});
}

TEST(DeviceNameInAnArchive, MayBeAbsentButNotHostile)
{
    using L1 = QLatin1String;
    const auto decoded = [](const ArchiveValue &name) {
        const LogCapture log;
        ArchiveSketch sketch = SmallStore::current();
        sketch.objects[SmallStore::Child].set(L1("deviceName"), name);
        auto store = DataStoreDecoder::decode(sketch.bytes());
        EXPECT_EQ(log.messages().isEmpty(), store != nullptr);
        return store;
    };
    const auto named = [](const char *key, const QString &text) {
        return ArchiveDictionary{{QString::fromLatin1(key), text}};
    };
    const auto sound = decoded(named("DxModelName", QStringLiteral("Model")));
    ASSERT_TRUE(sound);
    EXPECT_EQ(sound->registryEntries()[1]->deviceName()->title().toStdString(), "Model");
    EXPECT_TRUE(decoded(named("DxLaterKey", QStringLiteral("x"))));
    EXPECT_FALSE(decoded(named("DxModelName", QString(256, u'x'))));
    EXPECT_FALSE(decoded(QStringLiteral("Model")));
    EXPECT_FALSE(decoded(ArchiveDictionary{{QStringLiteral("DxModelName"), ArchiveValue(true)}}));
}
