// Trees of old kernels, odd ones, and hostile ones: nothing in them is left out without a word.
#include "LinuxFixture.h"
#include "model/linux/PlaneReach.h"
#include "model/linux/RegistryGraph.h"
#include "model/linux/UdevDatabase.h"
#include "tests/support/LesserRights.h"
#include "tests/support/MadeTree.h"
#include "tests/support/TreePrinter.h"
#include "tests/support/TreeText.h"

#include <QProcess>
#include <random>

namespace {
RegistryGraph graphOf(const MadeTree &made)
{
    QString error;
    const auto root =
        std::make_shared<SysfsRoot>(*SysfsRoot::open(QFile::encodeName(made.sys()), &error));
    ClassNames classNames;
    UdevDatabase udev(root->folder());
    return {HostObjects(Sweeper(root).run(), {}, {}, classNames), udev};
}

TEST(OddTrees, HaveTheSystemDevicesOfKernelsThatGaveThemNoUevent)
{
    MadeTree made;
    for (const char *device : {"clocksource/clocksource0", "cpu/cpu0", "cpu/cpu12", "edac/mc/mc0",
                               "i8237/i82370", "xen_memory/xen_memory0"})
        made.file(("devices/system/" + QByteArray(device) + "/online").constData(), "1\n");
    made.link("devices/system/edac/mc/subsystem", "../../../../bus/edac");
    for (const char *group : {"cpufreq/policy0", "cpuidle", "hotplug", "intel_pstate", "power",
                              "smt", "vulnerabilities"})
        made.file(("devices/system/cpu/" + QByteArray(group) + "/active").constData(), "1\n");
    const CapturedTree tree = CapturedTree::capture(made.sys());
    EXPECT_EQ(TreePrinter::plane(*tree.store, QStringLiteral("DxService")), dedented(R"(
        Root
          Host
            system
              clocksource0
              cpu0
              cpu12
              i82370
              mc
                mc0
              xen_memory0
    )"));
    EXPECT_EQ(tree.at("DxBus:/cpu12")->inheritanceString().toStdString(),
              "DxCpuDevice : DxBusDevice : DxDevice : DxService : DxRegistryEntry");
    EXPECT_TRUE(tree.at("DxBus:/mc/mc0"));
    const auto *groups =
        tree.at("DxService:/system")->properties()->childWithName(QStringLiteral("cpu"));
    ASSERT_TRUE(groups);
    EXPECT_EQ(groups->children().size(), 7U);
}

// Links of all kinds that lead anywhere.
void makeOddLinks(MadeTree &made, unsigned seed)
{
    const char *const devices[] = {
        "devices/a",           "devices/a/b",           "devices/a/b/c",        "devices/d",
        "devices/LNXSYSTM:00", "devices/LNXSYSTM:00/n", "devices/virtual/net/v"};
    const char *const links[] = {"consumer", "driver",    "firmware_node",
                                 "lower_x",  "of_node",   "power_resources_D0/x",
                                 "slaves/x", "subsystem", "supplier"};
    const char *const elsewhere[] = {
        "bus/usb/devices/x",     "bus/usb/devices/y", "bus/usb/drivers/hub/module",
        "bus/usb/drivers/hub/x", "class/net/x",       "class/block/x",
        "module/m/holders/x",    "devices/loop"};
    const char *const targets[] = {"",
                                   ".",
                                   "..",
                                   "block",
                                   "bus/usb",
                                   "bus/usb/devices",
                                   "bus/usb/devices/x",
                                   "bus/usb/drivers",
                                   "bus/usb/drivers/hub",
                                   "bus/none/drivers/x",
                                   "class/block",
                                   "class/devlink",
                                   "class/net",
                                   "devices",
                                   "devices/a",
                                   "devices/a/b",
                                   "devices/a/b/c",
                                   "devices/a/driver",
                                   "devices/d",
                                   "devices/LNXSYSTM:00",
                                   "devices/LNXSYSTM:00/n",
                                   "devices/loop/a",
                                   "devices/virtual",
                                   "firmware/devicetree/base/node",
                                   "module/m",
                                   "nowhere/at/all"};
    std::mt19937 random(seed);
    const auto linkFrom = [&](const QByteArray &path) {
        const char *const target = targets[random() % std::size(targets)];
        const QByteArray up = QByteArray("../").repeated(path.count('/'));
        made.folder(path.left(path.lastIndexOf('/')).constData());
        made.link(path.constData(), (up + target).constData());
    };
    for (const char *folder :
         {"bus/usb/devices", "bus/usb/drivers/hub", "class/block", "class/devlink", "class/net",
          "firmware/devicetree/base/node", "module/m"})
        made.folder(folder);
    for (const char *device : devices) {
        made.file((QByteArray(device) + "/uevent").constData(), "");
        made.file((QByteArray(device) + "/power/runtime_status").constData(), "active\n");
        for (const char *link : links) {
            if (random() % 2)
                linkFrom(QByteArray(device) + '/' + link);
        }
    }
    for (const char *link : elsewhere)
        linkFrom(link);
}

TEST(OddTrees, HaveNoEntryThatNobodyComesTo)
{
    for (unsigned seed = 0; seed < 20; ++seed) {
        MadeTree made;
        makeOddLinks(made, seed);
        EXPECT_EQ(unreachableEntries(graphOf(made)).join(", "), "") << "of links by seed " << seed;
    }
}

TEST(OddTrees, HaveBindingsToDriversAlone)
{
    MadeTree made;
    made.folder("bus/made/drivers/hub");
    made.folder("class/made");
    const std::pair<const char *, const char *> drivers[] = {
        {"bound", "../../bus/made/drivers/hub"},
        {"gone", "../../bus/other/drivers/hub"},
        {"bus", "../../bus/made"},
        {"class", "../../class/made"},
        {"deep", "../../bus/made/drivers/a/b"},
        {"self", "driver"}};
    for (const auto &[device, target] : drivers) {
        made.file(("devices/" + QByteArray(device) + "/uevent").constData(), "");
        made.link(("devices/" + QByteArray(device) + "/driver").constData(), target);
    }
    const CapturedTree tree = CapturedTree::capture(made.sys());
    EXPECT_EQ(TreePrinter::plane(*tree.store, QStringLiteral("DxDriver")), dedented(R"(
        Root
          Host
            hub@gone
            made
              hub
                hub@bound
    )"));
}

// "PATH/ATTRIBUTE: REASON" of all that could not be read.
QByteArrayList unreadIn(const RegistryGraph &graph)
{
    QByteArrayList unread;
    for (int i = 0; i < graph.count(); ++i) {
        const HostObject &object = graph.at(i);
        for (const auto &[key, reason] : object.properties.member(u"DxUnreadAttributes").members())
            unread.append(object.path + '/' + key.toOwner().toUtf8() + ": " +
                          reason.toString().toUtf8());
    }
    std::sort(unread.begin(), unread.end());
    return unread;
}

TEST(OddTrees, NameWhatMayNotBeOpened)
{
    MadeTree made;
    for (const char *file :
         {"bus/closed/x", "bus/open/devices/x", "bus/open/drivers/x", "module/m/x",
          "devices/closed/uevent", "devices/open/uevent", "devices/open/group/x",
          "devices/open/listed/uevent", "devices/open/pointed/uevent", "devices/virtual/closed/x"})
        made.file(file, "1\n");
    made.folder("class/c");
    made.link("class/c/pointed", "../../devices/open/pointed");
    made.link("devices/open/listed/link", "../..");
    ASSERT_EQ(mknod(made.path("devices/open/socket").constData(), S_IFSOCK | 0600, 0), 0);
    const char *const closed[] = {
        "bus/closed",     "bus/open/devices",   "bus/open/drivers",     "module",
        "devices/closed", "devices/open/group", "devices/open/pointed", "devices/virtual/closed"};
    for (const char *folder : closed)
        chmod(made.path(folder).constData(), 0);
    chmod(made.path("devices/open/listed").constData(), 0400);
    const RegistryGraph graph = withLesserRights([&] { return graphOf(made); });
    const QByteArrayList expected{"/module: Permission denied",
                                  "bus/closed/.: Permission denied",
                                  "bus/open/devices: Permission denied",
                                  "bus/open/drivers: Permission denied",
                                  "devices/closed/.: Permission denied",
                                  "devices/open/group: Permission denied",
                                  "devices/open/listed/link: Permission denied",
                                  "devices/open/listed/uevent: Permission denied",
                                  "devices/open/pointed/.: Permission denied",
                                  "devices/open/socket: neither file nor folder nor link",
                                  "devices/virtual/closed/.: Permission denied"};
    EXPECT_EQ(unreadIn(graph).join('\n').toStdString(), expected.join('\n').toStdString());
    EXPECT_EQ(graph.at(graph.withPath("devices/open/listed")).kind, SweepObject::Kind::Device);
    for (const char *folder : closed)
        chmod(made.path(folder).constData(), 0700);
    chmod(made.path("devices/open/listed").constData(), 0700);
}

class NoWatch final : public ObjectReader::Watch
{
public:
    bool mayTake(const QByteArray &, const QByteArray &) override { return true; }
    bool returned() override { return true; }
    bool isGivenUp() const override { return false; }
};

// A chain of devices of the same name, each in the one before. Its paths are longer than what the
// kernel takes, and than what Qt can remove.
class DeepChain
{
public:
    DeepChain(const QByteArray &name, int levels)
    {
        FileDescriptor folder(open(made_.path("devices").constData(), O_PATH | O_CLOEXEC));
        for (int i = 0; i < levels; ++i) {
            EXPECT_EQ(mkdirat(folder.get(), name.constData(), 0700), 0);
            folder = FileDescriptor(openat(folder.get(), name.constData(), O_PATH | O_CLOEXEC));
            EXPECT_EQ(mknodat(folder.get(), "uevent", S_IFREG | 0600, 0), 0);
        }
    }
    ~DeepChain() { QProcess::execute(QStringLiteral("rm"), {QStringLiteral("-rf"), made_.sys()}); }

    const MadeTree &tree() const { return made_; }

private:
    MadeTree made_;
};

TEST(OddTrees, AreShownToTheirBottomOrWhereTheyAreTooDeepSaySo)
{
    const auto expectChain = [](const QByteArray &name, int levels, int shown) {
        const DeepChain chain(name, levels);
        const RegistryGraph graph = graphOf(chain.tree());
        EXPECT_EQ(graph.count() - 2, shown);
        const QByteArray last = "devices" + ('/' + name).repeated(shown);
        const int index = graph.withPath(last);
        ASSERT_NE(index, HostObject::none);
        EXPECT_FALSE(graph.at(index).properties.member(u"uevent").isNone());
        EXPECT_EQ(unreadIn(graph).join(' '),
                  levels > shown ? last + '/' + name + ": lies too deep" : QByteArray());
    };
    expectChain("d", 2'500, 2'500);
    expectChain(QByteArray(200, 'x'), 200, (ObjectReader::longestPath - 7) / 201);
}

TEST(OddTrees, HaveNoMoreLevelsThanStated)
{
    MadeTree made;
    made.file("devices/a/b/uevent", "");
    QString error;
    const auto root = SysfsRoot::open(QFile::encodeName(made.sys()), &error);
    const QSet<QByteArray> forced;
    NoWatch watch;
    ObjectReader reader(*root, forced, watch, false);
    const auto readAtLevel = [&](qsizetype level) {
        const QByteArray path = "devices" + QByteArray("/.").repeated(level - 1) + "/a";
        return reader.read({.path = path});
    };
    EXPECT_EQ(readAtLevel(ObjectReader::mostLevels - 1).below.size(), 1U);
    const auto deepest = readAtLevel(ObjectReader::mostLevels);
    EXPECT_TRUE(deepest.below.empty());
    ASSERT_EQ(deepest.object.unread.size(), 1U);
    EXPECT_EQ(deepest.object.unread[0].path, "b");
}
} // namespace
