// SPDX-License-Identifier: Apache-2.0
#include "LinuxFixture.h"
#include "platform/runloop/RunLoop.h"
#include "platform/runloop/Wait.h"
#include "tests/support/EventLoop.h"
#include "tests/support/MadeTree.h"

#include <QElapsedTimer>
#include <QFile>
#include <fcntl.h>
#include <thread>
#include <unistd.h>

namespace {
QStringList unread(const TavRegistryEntry *entry)
{
    QStringList texts;
    const auto *table = entry->properties()->childWithName(QStringLiteral("DxUnreadAttributes"));
    if (table) {
        for (const auto *node : table->children())
            texts.append(node->name() + QStringLiteral(": ") + node->value().toString());
    }
    return texts;
}

std::size_t threadCount()
{
    return static_cast<std::size_t>(QDir(QStringLiteral("/proc/self/task"))
                                        .entryList(QDir::Dirs | QDir::NoDotAndDotDot)
                                        .size());
}

enum class Hang { Interruptible, Uninterruptible };

TreeReader::Options patienceOf(int milliseconds, Hang hang = Hang::Uninterruptible)
{
    return {.patience = std::chrono::milliseconds(milliseconds),
            .interrupts = hang == Hang::Interruptible};
}

TreeReader treeReaderOf(const MadeTree &made, int patience)
{
    return {std::make_shared<SysfsRoot>(*SysfsRoot::open(QFile::encodeName(made.sys()))),
            patienceOf(patience)};
}

// Lets readers of the pipe continue.
void answer(const QByteArray &pipe)
{
    close(open(pipe.constData(), O_RDWR | O_CLOEXEC));
}

// Lets a thread that waits for a pipe return after all other statics are destroyed: it must not
// touch them.
class LateAnswer
{
public:
    void comeFrom(const QByteArray &pipe)
    {
        pipe_ = FileDescriptor(open(pipe.constData(), O_PATH | O_CLOEXEC));
    }
    ~LateAnswer()
    {
        if (!pipe_)
            return;
        const std::string path = "/proc/self/fd/" + std::to_string(pipe_.get());
        const FileDescriptor answer(open(path.c_str(), O_RDWR | O_CLOEXEC));
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
    }

private:
    FileDescriptor pipe_;
};
[[gnu::init_priority(101)]] LateAnswer lateAnswer;

// Acts as soon as the main thread waits, or waits for an attribute.
class Display : public WaitDisplay
{
public:
    explicit Display(std::function<void(Wait &)> first, const char *object = nullptr,
                     const char *attribute = nullptr)
        : first_(std::move(first))
        , awaited_{QString::fromLatin1(object), QString::fromLatin1(attribute)}
    {
        RunLoop::main().setWaitDisplay(this);
    }
    ~Display() override
    {
        EXPECT_FALSE(first_) << "nothing was waited for";
        RunLoop::main().setWaitDisplay(nullptr);
    }
    void waiting(Wait &wait, std::chrono::milliseconds) override
    {
        if (!awaited_.object.isNull() && wait.subject() != awaited_)
            return;
        if (const auto first = std::exchange(first_, nullptr))
            first(wait);
    }
    void waitEnded() override {}

private:
    std::function<void(Wait &)> first_;
    Wait::Subject awaited_;
};

void cancel(Wait &wait)
{
    wait.cancel();
}

void skip(Wait &wait)
{
    wait.skip();
}

// A device with an attribute that does not answer.
class SlowDevice : public testing::Test
{
protected:
    SlowDevice()
    {
        made_.file("devices/slow/uevent", "");
        made_.file("devices/slow/after", "1");
        made_.file("devices/slow/child/uevent", "");
        made_.pipe("devices/slow/blocks");
    }
    ~SlowDevice() override { lateAnswer.comeFrom(made_.path("devices/slow/blocks")); }

    MadeTree made_;
};

TEST(TreeReader, KeepsInMemoryWhatAnUpdateFindsUnchanged)
{
    MadeTree made;
    made.file("devices/steady/uevent", "DRIVER=none\n");
    made.file("devices/steady/vendor", "a text that stays\n");
    made.file("devices/moving/uevent", "DRIVER=none\n");
    made.file("devices/moving/power/control", "another text that stays\n");
    made.file("devices/moving/state", "idle\n");
    const auto tree = CapturedTree::capture(made.sys());
    TavRegistryEntry *const steady = tree.at("DxService:/steady");
    TavRegistryEntry *const moving = tree.at("DxService:/moving");
    ASSERT_TRUE(steady && moving);
    const PropertyRef steadyBefore = steady->propertiesRef();
    const PropertyRef movingBefore = moving->propertiesRef();
    const QDateTime readBefore = steadyBefore->dateRead();
    const auto control = [&] {
        const auto *power = moving->properties()->childWithName(QStringLiteral("power"));
        return power->childWithName(QStringLiteral("control"))->value().stringView().data();
    };
    const QChar *const controlBefore = control();

    made.file("devices/moving/state", "busy\n");
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
    tree.store->update();

    EXPECT_EQ(steady->propertiesRef(), steadyBefore);
    EXPECT_GT(steady->properties()->dateRead(), readBefore);
    EXPECT_NE(moving->propertiesRef(), movingBefore);
    EXPECT_EQ(CapturedTree::value(moving, u"state").toString(), QStringLiteral("busy"));
    EXPECT_EQ(control(), controlBefore);
}

TEST(TreeReader, ReadsAllElseOfAnObjectWithOddAttributes)
{
    MadeTree made;
    made.file("devices/odd/uevent", "");
    made.file("devices/odd/good", "1\n");
    made.file("devices/odd/latin1", "caf\xe9");
    made.file("devices/odd/long", QByteArray(4096, 'x'));
    made.file("devices/odd/wide", QByteArray("x") + QByteArray("\xc3\xa9").repeated(3000));
    made.file("devices/odd/binary", QByteArray(100000, '\0'));
    made.file("devices/odd/secret", "hidden");
    chmod(made.path("devices/odd/secret").constData(), 0200);
    made.link("devices/odd/dangling", "../nowhere");
    made.link("devices/odd/outside", "../../../../../../../../etc/passwd");
    made.link("devices/odd/self", "self");
    made.link("devices/odd/parent", "..");
    const CapturedTree tree = CapturedTree::capture(made.sys());
    const TavRegistryEntry *odd = tree.at("DxService:/odd");
    ASSERT_TRUE(odd);
    const auto value = [odd](QStringView key) { return CapturedTree::value(odd, key); };
    EXPECT_EQ(value(u"good").numberBits(), 1U);
    EXPECT_EQ(value(u"latin1").toData(), "caf\xe9");
    EXPECT_EQ(value(u"long").toString().size(), 4096);
    EXPECT_EQ(value(u"wide").toString().size(), 2048); // 4 KiB, cut at a character
    EXPECT_EQ(value(u"binary").toData().size(), 65536);
    EXPECT_TRUE(value(u"secret").isNone());
    EXPECT_EQ(value(u"dangling").toString(), QStringLiteral("devices/nowhere"));
    EXPECT_TRUE(value(u"outside").toString().endsWith(QStringLiteral("../etc/passwd")));
    EXPECT_EQ(value(u"self").toString(), QStringLiteral("devices/odd/self"));
    EXPECT_EQ(value(u"parent").toString(), QStringLiteral("devices"));
    EXPECT_EQ(tree.store->registryEntries().size(), 3U);
}

TEST(TreeReader, ReadsOneObjectWithItsChildrenAndItsDriver)
{
    MadeTree made;
    made.file("devices/host/port/uevent", "");
    made.folder("bus/made/drivers/hub");
    made.folder("bus/made/devices");
    made.link("devices/host/port/subsystem", "../../../bus/made");
    const CapturedTree tree = CapturedTree::capture(made.sys());
    TavRegistryEntry *const port = tree.at("DxService:/host/port");
    ASSERT_TRUE(port);
    EXPECT_FALSE(port->isMatched());
    made.file("devices/host/port/disk/uevent", "");
    made.file("devices/host/other/uevent", "");
    made.link("devices/host/port/driver", "../../../bus/made/drivers/hub");
    tree.store->updateObject(*port);
    EXPECT_TRUE(port->isMatched());
    const TavRegistryEntry *disk = tree.at("DxService:/host/port/disk");
    ASSERT_TRUE(disk);
    EXPECT_EQ(disk->registryState(), RegistryStateNew);
    EXPECT_FALSE(tree.at("DxService:/host/other"));
}

TEST_F(SlowDevice, IsReadWithoutWhatDoesNotAnswer)
{
    const CapturedTree tree = CapturedTree::capture(made_.sys(), patienceOf(500));
    const std::size_t before = threadCount();
    const TavRegistryEntry *slow = tree.at("DxService:/slow");
    ASSERT_TRUE(slow);
    EXPECT_TRUE(tree.at("DxService:/slow/child"));
    EXPECT_EQ(CapturedTree::value(slow, u"after").numberBits(), 1U);
    EXPECT_EQ(unread(slow), QStringList{QStringLiteral("blocks: did not answer")});
    // Not tried again: that would leave another thread behind.
    tree.store->update();
    EXPECT_TRUE(waitFor([&] { return threadCount() <= before; }));
    EXPECT_EQ(unread(slow).size(), 1);
}

TEST_F(SlowDevice, IsWaitedForWithTheDisplay)
{
    const QByteArray pipe = made_.path("devices/slow/blocks");
    ASSERT_EQ(unlink(pipe.constData()), 0);
    const CapturedTree tree = CapturedTree::capture(made_.sys(), patienceOf(500));
    TavRegistryEntry *const slow = tree.at("DxService:/slow");
    ASSERT_TRUE(slow);
    made_.pipe("devices/slow/blocks");
    bool wasShown = false;
    const Display display([&](Wait &) { wasShown = true; });
    tree.store->updateObject(*slow);
    EXPECT_TRUE(wasShown);
    EXPECT_EQ(unread(slow), QStringList{QStringLiteral("blocks: did not answer")});
}

TEST_F(SlowDevice, IsSkippedImmediatelyWhenTheUserAsks)
{
    for (const Hang hang : {Hang::Interruptible, Hang::Uninterruptible}) {
        QElapsedTimer time;
        time.start();
        const Display display(skip, "devices/slow", "blocks");
        const CapturedTree tree = CapturedTree::capture(made_.sys(), patienceOf(20'000, hang));
        EXPECT_LT(time.elapsed(), 15'000); // of its patience
        const TavRegistryEntry *const slow = tree.at("DxService:/slow");
        ASSERT_TRUE(slow);
        EXPECT_EQ(CapturedTree::value(slow, u"after").numberBits(), 1U);
        EXPECT_EQ(unread(slow), QStringList{QStringLiteral("blocks: did not answer")});
        EXPECT_TRUE(tree.at("DxService:/slow/child"));
    }
}

TEST_F(SlowDevice, IsNotShownWhenTheFirstReadingIsCancelled)
{
    const auto service = *LinuxRegistryService::create(made_.sys(), patienceOf(20'000));
    {
        const Display display(cancel);
        EXPECT_FALSE(TavDataStore::initFromDxRegistry(*service));
    }
    // The next action starts from nothing.
    const Display display(skip, "devices/slow", "blocks");
    const auto store = TavDataStore::initFromDxRegistry(*service);
    ASSERT_TRUE(store);
    EXPECT_EQ(store->incompleteObjects(), QStringList{QStringLiteral("devices/slow")});
}

TEST_F(SlowDevice, LeavesTheFormerPictureWhenAnUpdateIsCancelled)
{
    ASSERT_EQ(unlink(made_.path("devices/slow/blocks").constData()), 0);
    made_.pipe("devices/slow/eeprom"); // which is read on request alone
    const CapturedTree tree =
        CapturedTree::capture(made_.sys(), patienceOf(20'000, Hang::Interruptible));
    TavRegistryEntry *const slow = tree.at("DxService:/slow");
    ASSERT_TRUE(slow);
    const PropertyRef properties = slow->propertiesRef();
    const QDateTime updated = tree.store->lastUpdateDate();
    made_.pipe("devices/slow/blocks");
    made_.file("devices/well/uevent", "");
    const std::vector<std::pair<const char *, std::function<void()>>> updates = {
        {"blocks", [&] { EXPECT_FALSE(tree.store->update()); }},
        {"blocks", [&] { EXPECT_FALSE(tree.store->updateTryingAgain()); }},
        {"eeprom", [&] { tree.store->updateObject(*slow); }},
    };
    for (const auto &[attribute, update] : updates) {
        SCOPED_TRACE(attribute);
        const Display display(cancel, "devices/slow", attribute);
        update();
        EXPECT_EQ(tree.store->lastUpdateDate(), updated);
        EXPECT_EQ(slow->propertiesRef(), properties);
        EXPECT_EQ(tree.store->registryEntries().size(), 4U);
    }
    const Display display(skip, "devices/slow", "blocks");
    EXPECT_TRUE(tree.store->update());
    EXPECT_TRUE(tree.at("DxService:/well"));
    EXPECT_EQ(unread(slow).size(), 2);
}

TEST_F(SlowDevice, MayBeRereadDuringTheWait)
{
    const auto service = *LinuxRegistryService::create(made_.sys(), patienceOf(200));
    bool hasBegun = false;
    const Display display([&](Wait &) {
        hasBegun = true;
        service->prepare();
    });
    service->prepare();
    EXPECT_TRUE(hasBegun);
    EXPECT_TRUE(service->entryFromPath(QStringLiteral("DxService:/slow")));
}

TEST_F(SlowDevice, IsLeftOutWhenTheReadingIsStopped)
{
    TreeReader treeReader = treeReaderOf(made_, 3'600'000);
    std::stop_source stop;
    std::jthread asker([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        stop.request_stop();
    });
    for (const RawObject &object : treeReader.run(stop.get_token()).objects)
        EXPECT_NE(object.path, "devices/slow");
}

// Devices with an attribute that does not answer among healthy ones, and one with many of them.
class DeadDevices : public testing::TestWithParam<Hang>
{
protected:
    static constexpr int devices = 60;
    static constexpr int attributes = 40;

    DeadDevices()
    {
        CapturedTree::capture(made_.sys()); // starts the threads of the libraries
        threadsBefore_ = threadCount();
        for (int i = 0; i < devices; ++i) {
            healthy(i);
            made_.file((dead(i) + "/uevent").constData(), "A=1");
            made_.file((dead(i) + "/zeal").constData(), "7");
            made_.pipe(dead(i) + "/blocks");
        }
        made_.file("devices/mute/uevent", "A=1");
        made_.file("devices/mute/child/uevent", "");
        made_.file("devices/mute/zeal", "7");
        for (int i = 0; i < attributes; ++i)
            made_.pipe("devices/mute/a" + QByteArray::number(10 + i));
    }
    ~DeadDevices() override
    {
        for (int i = 0; i < devices; ++i)
            answer(made_.path(dead(i).constData()) + "/blocks");
        for (int i = 0; i < attributes; ++i)
            answer(made_.path("devices/mute/a") + QByteArray::number(10 + i));
        EXPECT_TRUE(waitFor([&] { return threadCount() <= threadsBefore_; }));
    }
    void healthy(int number)
    {
        const QByteArray device = "devices/healthy" + QByteArray::number(number);
        made_.file((device + "/uevent").constData(), "A=1");
        made_.file((device + "/zeal").constData(), "7");
    }
    static QByteArray dead(int number) { return "devices/dead" + QByteArray::number(number); }

    MadeTree made_;
    std::size_t threadsBefore_ = 0;
};

TEST_P(DeadDevices, AreKnownByNameAndKeepNothingElseAway)
{
    const CapturedTree tree = CapturedTree::capture(made_.sys(), patienceOf(200, GetParam()));
    const bool isInterruptible = GetParam() == Hang::Interruptible;
    EXPECT_LE(threadCount(), threadsBefore_ + (isInterruptible ? 0 : 32));
    const auto at = [&tree](QByteArray path) {
        return tree.at(path.replace("devices/", "DxService:/").constData());
    };
    int whole = 0;
    for (int i = 0; i < devices; ++i) {
        const TavRegistryEntry *const device = at("devices/healthy" + QByteArray::number(i));
        ASSERT_TRUE(device && at(dead(i))) << i;
        whole += CapturedTree::value(device, u"zeal").numberBits() == 7;
        if (isInterruptible) {
            EXPECT_EQ(CapturedTree::value(at(dead(i)), u"zeal").numberBits(), 7U);
            EXPECT_EQ(unread(at(dead(i))), QStringList{QStringLiteral("blocks: did not answer")});
        }
    }
    EXPECT_TRUE(whole == devices || !isInterruptible) << whole;
    const TavRegistryEntry *const mute = at("devices/mute");
    ASSERT_TRUE(mute && at("devices/mute/child"));
    if (isInterruptible) {
        EXPECT_TRUE(mute->properties()->childWithName(QStringLiteral("uevent")));
        const QStringList its = unread(mute);
        EXPECT_EQ(its.size(), attributes + 1) << "with what comes after them";
        EXPECT_EQ(its.filter(QStringLiteral("did not answer")).size(), 2);
    }
    const auto *const incomplete = tree.store->registryRoot()->properties()->childWithName(
        QStringLiteral("DxIncompleteObjects"));
    ASSERT_TRUE(incomplete);
    EXPECT_TRUE(incomplete->childWithName(QStringLiteral("devices/mute")));

    // The next reading loses nothing that is known, and finds what is new.
    healthy(devices);
    tree.store->update();
    EXPECT_TRUE(at("devices/healthy" + QByteArray::number(devices)));
    for (const EntryRef &entry : tree.store->registryEntries())
        EXPECT_NE(entry->registryState(), RegistryStateTerminated);
}

INSTANTIATE_TEST_SUITE_P(Hangs, DeadDevices,
                         testing::Values(Hang::Interruptible, Hang::Uninterruptible),
                         [](const auto &its) {
                             return std::string(its.param == Hang::Interruptible
                                                    ? "Interruptible"
                                                    : "Uninterruptible");
                         });

TEST(TreeReader, TriesAgainWhatDidNotAnswerWhenAsked)
{
    MadeTree made;
    made.file("devices/slow/uevent", "");
    made.pipe("devices/slow/blocks");
    const CapturedTree tree =
        CapturedTree::capture(made.sys(), patienceOf(100, Hang::Interruptible));
    EXPECT_EQ(unread(tree.at("DxService:/slow")).size(), 1);
    ASSERT_EQ(unlink(made.path("devices/slow/blocks").constData()), 0);
    made.file("devices/slow/blocks", "no more");
    tree.store->update();
    EXPECT_EQ(unread(tree.at("DxService:/slow")).size(), 1);
    tree.service->retryWhatDidNotAnswer();
    tree.store->update();
    EXPECT_EQ(CapturedTree::value(tree.at("DxService:/slow"), u"blocks").toString(),
              QStringLiteral("no more"));
    EXPECT_FALSE(tree.store->registryRoot()->properties()->childWithName(
        QStringLiteral("DxIncompleteObjects")));
}

TEST(TreeReader, LearnsFromOneThatIsCancelled)
{
    constexpr int pipes = 5;
    MadeTree made;
    const auto pipe = [](int number) { return "devices/" + QByteArray::number(number) + "/slow"; };
    for (int i = 0; i < pipes; ++i) {
        made.file(("devices/" + QByteArray::number(i) + "/uevent").constData(), "");
        made.pipe(pipe(i));
    }
    const std::size_t before = threadCount();
    const auto service = *LinuxRegistryService::create(made.sys(), patienceOf(100));
    service->prepareAsync([] {});
    std::this_thread::sleep_for(std::chrono::milliseconds(250));
    service->prepare();
    // One per pipe, and one that was reading when the first reading was cancelled.
    EXPECT_TRUE(waitFor([&] { return threadCount() <= before + pipes + 1; }));
    for (int i = 0; i < pipes; ++i)
        answer(made.path(pipe(i).constData()));
    EXPECT_TRUE(waitFor([&] { return threadCount() <= before; }));
}

TEST(TreeReader, SurvivesATreeThatChangesWhileItIsRead)
{
    MadeTree made;
    made.file("devices/stays/uevent", "");
    std::atomic<bool> isOver = false;
    std::thread changer([&] {
        for (int i = 0; !isOver; ++i) {
            const QByteArray name = "devices/stays/comes" + QByteArray::number(i % 7);
            made.file((name + "/below/uevent").constData(), "A=1");
            made.file((name + "/uevent").constData(), "B=2");
            made.remove(name.constData());
        }
    });
    const CapturedTree tree = CapturedTree::capture(made.sys());
    for (int i = 0; i < 100; ++i) {
        tree.store->update();
        EXPECT_TRUE(tree.at("DxService:/stays"));
    }
    isOver = true;
    changer.join();
}
} // namespace
