#include "LinuxFixture.h"
#include "platform/RunLoop.h"
#include "tests/support/EventLoop.h"
#include "tests/support/MadeTree.h"
#include "tests/support/VirtualDisk.h"

#include <QFile>
#include <QTemporaryDir>
#include <fcntl.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace {
QStringList unread(const TavRegistryEntry *entry)
{
    QStringList texts;
    const auto *set = entry->properties()->childWithName(QStringLiteral("DxUnreadAttributes"));
    if (set) {
        for (const auto *node : set->children())
            texts.append(node->value().toString());
    }
    return texts;
}

std::size_t threadCount()
{
    return static_cast<std::size_t>(QDir(QStringLiteral("/proc/self/task"))
                                        .entryList(QDir::Dirs | QDir::NoDotAndDotDot)
                                        .size());
}

Sweeper sweeperOf(const MadeTree &made, std::chrono::milliseconds patience)
{
    QString error;
    Sweeper::Options options;
    options.patience = patience;
    return {std::make_shared<SysfsRoot>(*SysfsRoot::open(QFile::encodeName(made.sys()), &error)),
            options};
}

// Lets a thread that waits for a pipe return when all other statics are gone: it may touch none.
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

TEST(SysfsRoot, RefusesWhatIsNoTree)
{
    QString error;
    EXPECT_FALSE(LinuxRegistryService::create(QStringLiteral("/nowhere/at/all"), &error));
    EXPECT_TRUE(error.contains(QStringLiteral("/nowhere/at/all"))) << error.toStdString();
    const QTemporaryDir empty;
    EXPECT_FALSE(LinuxRegistryService::create(empty.path(), &error));
    EXPECT_TRUE(error.contains(QStringLiteral("no sysfs tree"))) << error.toStdString();
}

TEST(SysfsRoot, ResolvesLinksByTheirTextOnly)
{
    EXPECT_EQ(SysfsRoot::resolveLink("class/net", "../../devices/virtual/net/lo"),
              "devices/virtual/net/lo");
    EXPECT_EQ(SysfsRoot::resolveLink("class/net", "./lo//x"), "class/net/lo/x");
    EXPECT_EQ(SysfsRoot::resolveLink("class/net", "../.."), "");
    EXPECT_TRUE(SysfsRoot::resolveLink("class/net", "../../../etc").isNull());
    EXPECT_TRUE(SysfsRoot::resolveLink("class/net", "/etc").isNull());
    EXPECT_TRUE(SysfsRoot::resolveLink("class/net", {}).isNull());
}

TEST(ObjectReader, LeavesOutLinksThatCannotBeRead)
{
    class Refusal final : public ObjectReader::Watch
    {
    public:
        bool mayTake(const QByteArray &, const QByteArray &name) override
        {
            return name != "driver" && name != "a";
        }
        void returned() override {}
    };
    MadeTree made;
    made.file("devices/a/uevent", "");
    made.link("devices/a/driver", "../../bus/made/drivers/one");
    made.link("devices/a/other", "../b");
    made.folder("bus/made/devices");
    made.link("bus/made/devices/a", "../../../devices/a");
    made.link("bus/made/devices/b", "../../../devices/b");
    QString error;
    const auto root = SysfsRoot::open(QFile::encodeName(made.sys()), &error);
    Refusal watch;
    ObjectReader reader(*root, {}, watch, false);
    using Folder = AttributePolicy::Folder;
    const auto device = reader.read({Folder::Device, SweepObject::Kind::Device, "devices/a"});
    EXPECT_TRUE(device.object.member(u"driver").isNone());
    ASSERT_EQ(device.object.links.size(), 1U);
    EXPECT_EQ(device.object.links[0].target, "devices/b");
    const auto bus = reader.read({Folder::Bus, SweepObject::Kind::Bus, "bus/made"});
    ASSERT_EQ(bus.object.links.size(), 1U);
    EXPECT_EQ(bus.object.links[0].target, "devices/b");
}

TEST(Sweep, ReadsAllElseOfAnObjectWithOddAttributes)
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

TEST(Sweep, GoesOnWithoutAnAttributeThatDoesNotAnswer)
{
    MadeTree made;
    made.file("devices/slow/uevent", "");
    made.file("devices/slow/after", "1");
    made.file("devices/slow/child/uevent", "");
    made.file("devices/other/uevent", "");
    ASSERT_EQ(mkfifo(made.path("devices/slow/blocks").constData(), 0600), 0);
    Sweeper::Options options;
    options.patience = std::chrono::milliseconds(500);
    CapturedTree tree = CapturedTree::capture(made.sys(), options);
    const std::size_t before = threadCount();
    const TavRegistryEntry *slow = tree.at("DxService:/slow");
    ASSERT_TRUE(slow);
    EXPECT_TRUE(tree.at("DxService:/slow/child"));
    EXPECT_TRUE(tree.at("DxService:/other"));
    EXPECT_EQ(CapturedTree::value(slow, u"after").numberBits(), 1U);
    EXPECT_EQ(unread(slow), QStringList{QStringLiteral("blocks (did not answer)")});
    // It is not tried again: that would leave another thread behind.
    tree.store->update();
    EXPECT_TRUE(waitFor([&] { return threadCount() <= before; }));
    EXPECT_EQ(unread(slow).size(), 1);
    lateAnswer.comeFrom(made.path("devices/slow/blocks"));
}

TEST(Sweep, EndsWhenTooMuchDoesNotAnswer)
{
    constexpr std::size_t most = 40;
    constexpr int pipes = 80;
    MadeTree made;
    Sweeper sweeper = sweeperOf(made, std::chrono::milliseconds(30));
    const std::size_t before = threadCount();
    for (const char *device : {"devices/one/", "devices/two/"}) {
        made.file((QByteArray(device) + "uevent").constData(), "");
        QByteArrayList blocking;
        for (int i = 0; i < pipes; ++i)
            blocking.push_back(made.path(device) + QByteArray::number(i));
        for (const QByteArray &pipe : blocking)
            ASSERT_EQ(mkfifo(pipe.constData(), 0600), 0);
        sweeper.run();
        EXPECT_GT(threadCount(), before + most / 2);
        EXPECT_LT(threadCount(), before + most);
        for (const QByteArray &pipe : blocking)
            close(open(pipe.constData(), O_RDWR | O_CLOEXEC));
        EXPECT_TRUE(waitFor([&] { return threadCount() <= before; }));
        made.remove(device);
    }
}

TEST(Sweep, KeepsWhatIsKnownWhenTooMuchDoesNotAnswer)
{
    constexpr int pipes = 40;
    MadeTree made;
    made.file("devices/one/uevent", "");
    made.file("devices/one/child/uevent", "");
    Sweeper::Options options;
    options.patience = std::chrono::milliseconds(30);
    const CapturedTree tree = CapturedTree::capture(made.sys(), options);
    const std::size_t before = threadCount();
    const auto pipe = [&](int i) { return made.path("devices/one/") + QByteArray::number(i); };
    for (int i = 0; i < pipes; ++i)
        ASSERT_EQ(mkfifo(pipe(i).constData(), 0600), 0);
    tree.store->update();
    for (const EntryRef &entry : tree.store->registryEntries())
        EXPECT_EQ(entry->registryState(), RegistryStateUnchanged);
    for (int i = 0; i < pipes; ++i)
        close(open(pipe(i).constData(), O_RDWR | O_CLOEXEC));
    EXPECT_TRUE(waitFor([&] { return threadCount() <= before; }));
    // Whole again, for what did not answer is known now.
    made.file("devices/two/uevent", "");
    tree.store->update();
    EXPECT_TRUE(tree.at("DxService:/two"));
    EXPECT_EQ(tree.at("DxService:/one/child")->registryState(), RegistryStateUnchanged);
}

TEST(Sweep, LearnsFromOneThatIsCancelled)
{
    constexpr int pipes = 5;
    MadeTree made;
    made.file("devices/slow/uevent", "");
    for (int i = 0; i < pipes; ++i)
        ASSERT_EQ(mkfifo((made.path("devices/slow/") + QByteArray::number(i)).constData(), 0600),
                  0);
    Sweeper::Options options;
    options.patience = std::chrono::milliseconds(100);
    QString error;
    const std::size_t before = threadCount();
    const auto service = LinuxRegistryService::create(made.sys(), options, &error);
    service->prepareAsync([] {});
    std::this_thread::sleep_for(options.patience * 5 / 2);
    service->prepare();
    // One for each pipe, and one that was asking when the first sweep was cancelled.
    EXPECT_TRUE(waitFor([&] { return threadCount() <= before + pipes + 1; }));
    for (int i = 0; i < pipes; ++i)
        close(open((made.path("devices/slow/") + QByteArray::number(i)).constData(),
                   O_RDWR | O_CLOEXEC));
    EXPECT_TRUE(waitFor([&] { return threadCount() <= before; }));
}

TEST(Sweep, WaitsForOneObjectWithTheDisplay)
{
    class Display : public WaitDisplay
    {
    public:
        Display() { RunLoop::main().setWaitDisplay(this); }
        ~Display() override { RunLoop::main().setWaitDisplay(nullptr); }
        void waiting(std::chrono::milliseconds) override { wasShown = true; }
        void waitEnded() override {}
        bool wasShown = false;
    };
    MadeTree made;
    made.file("devices/slow/uevent", "");
    Sweeper::Options options;
    options.patience = std::chrono::milliseconds(500);
    CapturedTree tree = CapturedTree::capture(made.sys(), options);
    TavRegistryEntry *const slow = tree.at("DxService:/slow");
    ASSERT_TRUE(slow);
    ASSERT_EQ(mkfifo(made.path("devices/slow/blocks").constData(), 0600), 0);
    const Display display;
    tree.store->updateObject(*slow);
    EXPECT_TRUE(display.wasShown);
    EXPECT_EQ(unread(slow), QStringList{QStringLiteral("blocks (did not answer)")});
    lateAnswer.comeFrom(made.path("devices/slow/blocks"));
}

TEST(Sweep, MayBeginAnewWhileAnotherIsWaitedFor)
{
    class Display : public WaitDisplay
    {
    public:
        explicit Display(LinuxRegistryService &service)
            : service_(service)
        {
            RunLoop::main().setWaitDisplay(this);
        }
        ~Display() override { RunLoop::main().setWaitDisplay(nullptr); }
        void waiting(std::chrono::milliseconds) override
        {
            if (!std::exchange(hasBegun, true))
                service_.prepare();
        }
        void waitEnded() override {}
        bool hasBegun = false;

    private:
        LinuxRegistryService &service_;
    };
    MadeTree made;
    made.file("devices/slow/uevent", "");
    ASSERT_EQ(mkfifo(made.path("devices/slow/blocks").constData(), 0600), 0);
    QString error;
    Sweeper::Options options;
    options.patience = std::chrono::milliseconds(200);
    const auto service = LinuxRegistryService::create(made.sys(), options, &error);
    Display display(*service);
    service->prepare();
    EXPECT_TRUE(display.hasBegun);
    EXPECT_TRUE(service->entryFromPath(QStringLiteral("DxService:/slow")));
    lateAnswer.comeFrom(made.path("devices/slow/blocks"));
}

TEST(Sweep, EndsWhenAskedThoughAnAttributeDoesNotAnswer)
{
    MadeTree made;
    made.file("devices/slow/uevent", "");
    ASSERT_EQ(mkfifo(made.path("devices/slow/blocks").constData(), 0600), 0);
    Sweeper sweeper = sweeperOf(made, std::chrono::hours(1));
    std::stop_source stop;
    std::jthread asker([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        stop.request_stop();
    });
    for (const SweepObject &object : sweeper.run(stop.get_token()).objects)
        EXPECT_NE(object.path, "devices/slow");
    lateAnswer.comeFrom(made.path("devices/slow/blocks"));
}

TEST(Sweep, SurvivesATreeThatChangesWhileItIsRead)
{
    MadeTree made;
    made.file("devices/stays/uevent", "");
    std::atomic<bool> isOver = false;
    std::thread changer([&] {
        for (int i = 0; !isOver; ++i) {
            const QByteArray name = "devices/stays/comes" + QByteArray::number(i % 7);
            made.file((name + "/below/uevent").constData(), "A=1");
            made.file((name + "/uevent").constData(), "B=2");
            QDir(QFile::decodeName(made.path(name.constData()))).removeRecursively();
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

TEST(Sweep, KeepsTheLastFactsOfWhatIsGone)
{
    MadeTree made;
    made.file("devices/here/uevent", "");
    made.file("devices/here/leaves/uevent", "A=1");
    const CapturedTree tree = CapturedTree::capture(made.sys());
    TavRegistryEntry *const leaving = tree.at("DxService:/here/leaves");
    ASSERT_TRUE(leaving && leaving->isActive());
    QDir(QFile::decodeName(made.path("devices/here/leaves"))).removeRecursively();
    tree.store->update();
    EXPECT_EQ(tree.at("DxService:/here/leaves"), leaving);
    EXPECT_EQ(leaving->registryState(), RegistryStateTerminated);
    EXPECT_EQ(leaving->nameInPlane({}), QStringLiteral("leaves"));
    EXPECT_TRUE(leaving->properties());
    EXPECT_TRUE(tree.store->isUpToDate());
    tree.store->clearTerminatedObjects();
    EXPECT_TRUE(tree.at("DxService:/here")->childrenInPlane(QStringLiteral("DxService")).empty());
}

TEST(LiveHost, ShowsADeviceThatCameAsNew)
{
    const CapturedTree tree = CapturedTree::capture(QStringLiteral("/sys"));
    ASSERT_TRUE(tree.store);
    for (const EntryRef &entry : tree.store->registryEntries())
        ASSERT_EQ(entry->registryState(), RegistryStateUnchanged);
    VirtualDisk disk;
    if (!disk.exists())
        GTEST_SKIP() << "no virtual disk can be added here (needs root and the zram module)";
    tree.store->update();
    const QByteArray path = "DxService:/virtual/block/" + disk.name();
    const TavRegistryEntry *added = tree.at(path.constData());
    ASSERT_TRUE(added);
    EXPECT_EQ(added->registryState(), RegistryStateNew);
    EXPECT_EQ(added->DxcoreClass(), QStringLiteral("DxBlockDisk"));
    const TavRegistryEntry *parent = tree.at("DxService:/virtual/block");
    EXPECT_EQ(added->parentsInPlane(QStringLiteral("DxService")),
              EntryList::Entries{const_cast<TavRegistryEntry *>(parent)});
    EXPECT_EQ(parent->registryState(), RegistryStateUnchanged);
    EXPECT_TRUE(added->childrenInPlane(QStringLiteral("DxService")).empty());
    EXPECT_EQ(added->parentsInPlane(QStringLiteral("DxBlock")).size(), 1U);
    EXPECT_EQ(added->parentsInPlane(QStringLiteral("DxClass")).size(), 1U);
    disk.remove();
    tree.store->update();
    ASSERT_TRUE(tree.at(path.constData()));
    EXPECT_EQ(tree.at(path.constData())->registryState(), RegistryStateTerminated);
    tree.store->clearTerminatedObjects();
    EXPECT_FALSE(tree.at(path.constData()));
}
} // namespace
