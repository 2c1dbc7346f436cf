// SPDX-License-Identifier: Apache-2.0
#include "LinuxFixture.h"
#include "platform/runloop/RunLoop.h"
#include "tests/support/EventLoop.h"
#include "tests/support/MadeTree.h"

#include <QElapsedTimer>
#include <filesystem>
#include <unistd.h>

namespace {
// Attributes of a device that are only read on request.
class OnRequest : public testing::Test
{
protected:
    OnRequest()
    {
        made_.file("devices/card/uevent", "");
        made_.file("devices/card/eeprom", "memory");
        made_.file("devices/card/config", QByteArray(256, '\0'));
        made_.file("devices/card/vpd", "0");
        made_.file("devices/card/power/runtime_status", "active");
        made_.file("devices/card/ppi/version", "1.2");
        made_.file("devices/card/ppi/request", "5");
    }
    void capture()
    {
        tree_ = CapturedTree::capture(
            made_.sys(), {.patience = std::chrono::milliseconds(300), .interrupts = true});
    }
    TavRegistryEntry *card() const { return tree_.at("DxService:/card"); }
    RegistryValue at(const QStringList &way) const
    {
        const TavRegistryProperty *node = card()->properties();
        for (const QString &name : way)
            node = node ? node->childWithName(name) : nullptr;
        return node ? node->value() : RegistryValue();
    }
    QString reason(const char *attribute) const
    {
        return at({QStringLiteral("DxUnreadAttributes"), QString::fromLatin1(attribute)})
            .toString();
    }
    QString date(const char *attribute) const
    {
        return at({QStringLiteral("DxReadOnRequest"), QString::fromLatin1(attribute)}).toString();
    }
    bool mayRead(const char *attribute) const
    {
        return tree_.store->mayReadAttribute(*card(), QString::fromLatin1(attribute));
    }
    bool read(const char *attribute)
    {
        bool isRead = false;
        tree_.store->readAttribute(*card(), QString::fromLatin1(attribute), [&] { isRead = true; });
        EXPECT_FALSE(isRead);
        return waitFor([&] { return isRead; });
    }

    MadeTree made_;
    CapturedTree tree_;
};

TEST_F(OnRequest, OneAttributeIsReadAloneAndKept)
{
    capture();
    EXPECT_EQ(reason("eeprom"), QStringLiteral("not read: takes long"));
    EXPECT_EQ(reason("ppi/version"), QStringLiteral("not read: runs firmware code"));
    EXPECT_EQ(reason("vpd"), QStringLiteral("not read: hangs where the device does not answer"));
    EXPECT_FALSE(mayRead("vpd"));
    EXPECT_FALSE(mayRead("uevent"));

    made_.file("devices/card/uevent", "SINCE=1");
    ASSERT_TRUE(mayRead("ppi/version") && read("ppi/version"));
    const QString version = QStringLiteral("1.2");
    const QStringList place{QStringLiteral("ppi"), QStringLiteral("version")};
    EXPECT_EQ(at(place).toString(), version);
    EXPECT_TRUE(date("ppi/version").endsWith(QStringLiteral(" UTC")));
    EXPECT_TRUE(reason("ppi/version").isNull());
    EXPECT_FALSE(reason("ppi/request").isNull());
    EXPECT_FALSE(reason("eeprom").isNull());
    EXPECT_TRUE(date("eeprom").isNull());
    EXPECT_TRUE(at({QStringLiteral("uevent"), QStringLiteral("SINCE")}).isNone()); // it alone

    ASSERT_TRUE(read("config"));
    EXPECT_EQ(at({QStringLiteral("config")}).toData().size(), AttributePolicy::configBytes);
    tree_.store->update();
    EXPECT_EQ(at(place).toString(), version);
    EXPECT_FALSE(date("config").isNull());
    EXPECT_FALSE(at({QStringLiteral("uevent"), QStringLiteral("SINCE")}).isNone());

    made_.file("devices/card/ppi/version", "1.3");
    ASSERT_TRUE(mayRead("ppi/version") && read("ppi/version")); // again
    EXPECT_EQ(at(place).toString(), QStringLiteral("1.3"));
    tree_.store->updateObject(*card()); // all of them
    EXPECT_EQ(at({QStringLiteral("eeprom")}).toString(), QStringLiteral("memory"));
    EXPECT_TRUE(reason("ppi/request").isNull());
}

TEST_F(OnRequest, ADeviceThatIsSuspendedIsNotWoken)
{
    made_.file("devices/card/power/runtime_status", "suspended");
    capture();
    ASSERT_TRUE(read("config"));
    EXPECT_EQ(reason("config"), QStringLiteral("not read: the device is suspended"));
    made_.file("devices/card/power/runtime_status", "active");
    ASSERT_TRUE(mayRead("config") && read("config"));
    EXPECT_TRUE(reason("config").isNull());
}

TEST_F(OnRequest, WhatDoesNotAnswerKeepsNobodyWaiting)
{
    ASSERT_EQ(unlink(made_.path("devices/card/eeprom").constData()), 0);
    made_.pipe("devices/card/eeprom");
    capture();
    QElapsedTimer time;
    time.start();
    bool isRead = false;
    tree_.store->readAttribute(*card(), QStringLiteral("eeprom"), [&] { isRead = true; });
    EXPECT_LT(time.elapsed(), 200);
    ASSERT_TRUE(read("config")); // during the read
    EXPECT_FALSE(isRead);
    ASSERT_TRUE(waitFor([&] { return isRead; }));
    EXPECT_LT(time.elapsed(), 5000);
    EXPECT_EQ(reason("eeprom"), QStringLiteral("did not answer"));
    EXPECT_FALSE(mayRead("eeprom")); // it would hang again
    tree_.store->update();
    EXPECT_EQ(tree_.store->incompleteObjects(), QStringList{QStringLiteral("devices/card")});

    tree_.store->updateTryingAgain();
    EXPECT_TRUE(tree_.store->incompleteObjects().isEmpty());
    EXPECT_EQ(reason("eeprom"), QStringLiteral("not read: takes long"));
    ASSERT_EQ(unlink(made_.path("devices/card/eeprom").constData()), 0);
    made_.file("devices/card/eeprom", "memory");
    ASSERT_TRUE(mayRead("eeprom") && read("eeprom"));
    EXPECT_EQ(at({QStringLiteral("eeprom")}).toString(), QStringLiteral("memory"));
}

TEST_F(OnRequest, EndsWithTheServiceWhileTheDeviceIsWaitedFor)
{
    ASSERT_EQ(unlink(made_.path("devices/card/eeprom").constData()), 0);
    made_.pipe("devices/card/eeprom");
    tree_ = CapturedTree::capture(made_.sys(), {.patience = std::chrono::hours(1)});
    tree_.store->readAttribute(*card(), QStringLiteral("eeprom"), [] { FAIL(); });
    turnEventLoopFor(50);
    QElapsedTimer time;
    time.start();
    tree_.store.reset();
    tree_.service.reset();
    EXPECT_LT(time.elapsed(), 5000);
    turnEventLoopFor(50);
}

TEST_F(OnRequest, IsNotLostToAReadingThatBeganBefore)
{
    capture();
    made_.pipe("devices/card/slow"); // delays the reading
    bool isSwept = false;
    tree_.service->prepareAsync([&] { isSwept = true; });
    ASSERT_TRUE(read("ppi/version"));
    EXPECT_FALSE(isSwept);
    ASSERT_TRUE(waitFor([&] { return isSwept; }));
    card()->updateIsSingle(true);
    EXPECT_FALSE(at({QStringLiteral("ppi"), QStringLiteral("version")}).isNone());
}

class SampleTest : public OnRequest
{
protected:
    ObjectSample sample(const QStringList &attributes, const QStringList &onRequest = {})
    {
        std::optional<ObjectSample> taken;
        tree_.service->sample({.kernelPath = QStringLiteral("/sys/devices/card"),
                               .attributes = attributes,
                               .onRequest = onRequest},
                              [&](const ObjectSample &sample) { taken = sample; });
        EXPECT_FALSE(taken);
        EXPECT_TRUE(waitFor([&] { return taken.has_value(); }));
        return taken.value_or(ObjectSample());
    }
    static QStringList keysOf(const ObjectSample &sample)
    {
        QStringList keys;
        for (const auto &member : sample.members)
            keys.append(member.key.toOwner());
        return keys;
    }
};

TEST_F(SampleTest, ReadsWhatIsAskedForAndLeavesTheStoreAlone)
{
    made_.file("devices/card/statistics/packets", "1");
    made_.file("devices/card/statistics/errors", "0");
    capture();
    const auto before = tree_.store->lastUpdateDate();
    made_.file("devices/card/statistics/packets", "2");
    const ObjectSample one = sample({QStringLiteral("statistics/packets")});
    EXPECT_TRUE(one.isThere);
    ASSERT_EQ(keysOf(one), QStringList{QStringLiteral("statistics")});
    const auto inFolder = one.members.front().value.members();
    ASSERT_EQ(inFolder.size(), 1U);
    EXPECT_EQ(inFolder.front().value.numberBits(), 2U);
    EXPECT_EQ(at({QStringLiteral("statistics"), QStringLiteral("packets")}).numberBits(), 1U);
    EXPECT_EQ(tree_.store->lastUpdateDate(), before);
    // A value in a file.
    EXPECT_EQ(keysOf(sample({QStringLiteral("uevent/SINCE")})),
              QStringList{QStringLiteral("uevent")});

    const QString eeprom = QStringLiteral("eeprom");
    EXPECT_FALSE(keysOf(sample({})).contains(eeprom));
    EXPECT_FALSE(keysOf(sample({eeprom})).contains(eeprom));
    EXPECT_TRUE(keysOf(sample({}, {eeprom})).contains(eeprom));
    const QString never = QStringLiteral("vpd");
    EXPECT_FALSE(keysOf(sample({never}, {never})).contains(never));
    EXPECT_TRUE(date("eeprom").isNull()); // the store does not count it as read

    std::filesystem::remove_all(made_.path("devices/card").toStdString());
    EXPECT_FALSE(sample({}).isThere);
}

TEST_F(SampleTest, AttributeThatHangsIsNotTriedAgain)
{
    made_.file("devices/card/slow", "1");
    capture();
    ASSERT_EQ(unlink(made_.path("devices/card/slow").constData()), 0);
    made_.pipe("devices/card/slow");
    const QStringList slow{QStringLiteral("slow")};
    EXPECT_EQ(sample(slow).unanswered, slow);
    QElapsedTimer time;
    time.start();
    EXPECT_EQ(sample(slow).unanswered, slow);
    EXPECT_LT(time.elapsed(), 250); // the patience is 300
    EXPECT_TRUE(tree_.store->incompleteObjects().isEmpty());
}
} // namespace
