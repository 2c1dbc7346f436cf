// SPDX-License-Identifier: Apache-2.0
// Trees of older kernels, and impossible trees: everything in them is shown or listed.
#include "LinuxFixture.h"
#include "model/linux/RegistryGraph.h"
#include "model/linux/UdevDatabase.h"
#include "model/linux/UnreachableEntries.h"
#include "tests/support/LesserRights.h"
#include "tests/support/MadeTree.h"
#include "tests/support/TreePrinter.h"
#include "tests/support/TreeText.h"

#include <QProcess>
#include <random>

namespace {
std::shared_ptr<SysfsRoot> rootOf(const MadeTree &made)
{
    return std::make_shared<SysfsRoot>(*SysfsRoot::open(QFile::encodeName(made.sys())));
}

RegistryGraph graphOf(const MadeTree &made)
{
    const auto root = rootOf(made);
    ClassNames classNames;
    UdevDatabase udev(root->folder());
    return {ObjectTable(TreeReader(root).run(), {}, {}, classNames), udev};
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

QByteArrayList words(const char *text)
{
    return QByteArray(text).simplified().split(' ');
}

// Links of all kinds with random targets.
void makeOddLinks(MadeTree &made, unsigned seed)
{
    const QByteArrayList targets = words(
        "/ . .. block bus/usb bus/usb/devices bus/usb/devices/x bus/usb/drivers bus/usb/drivers/hub"
        " bus/none/drivers/x class/block class/devlink class/net devices devices/a devices/a/b"
        " devices/a/b/c devices/a/driver devices/d devices/LNXSYSTM:00 devices/LNXSYSTM:00/n"
        " devices/loop/a devices/virtual firmware/devicetree/base/node module/m nowhere/at/all");
    std::mt19937 random(seed);
    const auto linkFrom = [&](const QByteArray &path) {
        const QByteArray &target = targets[static_cast<qsizetype>(random()) % targets.size()];
        const QByteArray up = QByteArray("../").repeated(path.count('/'));
        made.folder(path.left(path.lastIndexOf('/')).constData());
        made.link(path.constData(), (up + target).constData());
    };
    for (const QByteArray &folder : words("bus/usb/devices bus/usb/drivers/hub class/devlink"
                                          " firmware/devicetree/base/node module/m"))
        made.folder(folder.constData());
    for (const QByteArray &device : words("devices/a devices/a/b devices/a/b/c devices/d"
                                          " devices/LNXSYSTM:00/n devices/virtual/net/v")) {
        made.file((device + "/uevent").constData(), "");
        made.file((device + "/power/runtime_status").constData(), "active\n");
        for (const QByteArray &link : words("consumer driver firmware_node lower_x of_node slaves/x"
                                            " power_resources_D0/x subsystem supplier")) {
            if (random() % 2)
                linkFrom(device + '/' + link);
        }
    }
    for (const QByteArray &link :
         words("bus/usb/devices/x bus/usb/devices/y bus/usb/drivers/hub/module class/net/x"
               " bus/usb/drivers/hub/x class/block/x module/m/holders/x devices/loop"))
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

// "PATH/ATTRIBUTE: REASON" of everything that could not be read.
QByteArrayList unreadIn(const RegistryGraph &graph)
{
    QByteArrayList unread;
    for (int i = 0; i < graph.count(); ++i) {
        const HostObject &object = graph.at(i);
        for (const auto &[key, reason] : object.properties.member(u"DxUnreadAttributes").members())
            unread.append(object.path.toByteArray() + '/' + key.toOwner().toUtf8() + ": " +
                          reason.toString().toUtf8());
    }
    std::sort(unread.begin(), unread.end());
    return unread;
}

TEST(OddTrees, NameWhatCannotBeReadOrHasNoPlace)
{
    MadeTree made;
    const QByteArrayList closed =
        words("bus/closed bus/open/drivers module devices/closed"
              " devices/open/group devices/open/pointed devices/virtual/closed");
    for (const QByteArray &folder : closed)
        made.folder(folder.constData());
    made.file("devices/open/uevent", "");
    made.file("devices/open/listed/uevent", "");
    made.folder("class/c");
    made.link("class/c/pointed", "../../devices/open/pointed");
    made.link("devices/open/listed/link", "../..");
    made.link("class/linked", "c");
    made.file("bus/odd/devices/file", "");
    made.file("bus/odd/drivers/file", "");
    made.link("bus/odd/devices/out", "/etc");
    made.folder("bus/open/devices");
    made.link("bus/open/devices/x", "../../../devices/open");
    ASSERT_EQ(mknod(made.path("devices/open/socket").constData(), S_IFSOCK | 0600, 0), 0);
    const auto setModes = [&](mode_t ofClosed, mode_t ofListed) {
        for (const QByteArray &folder : closed)
            chmod(made.path(folder.constData()).constData(), ofClosed);
        for (const char *folder : {"bus/open/devices", "devices/open/listed"})
            chmod(made.path(folder).constData(), ofListed);
    };
    setModes(0, 0400);
    const RegistryGraph graph = withLesserRights([&] { return graphOf(made); });
    setModes(0700, 0700);
    EXPECT_EQ('\n' + unreadIn(graph).join('\n').toStdString() + '\n', R"(
/class/linked: is no folder
/module: Permission denied
bus/closed/.: Permission denied
bus/odd/devices/file: is no link
bus/odd/devices/out: leads out of the tree
bus/odd/drivers/file: is no folder
bus/open/devices/x: Permission denied
bus/open/drivers: Permission denied
devices/closed/.: Permission denied
devices/open/group: Permission denied
devices/open/listed/link: Permission denied
devices/open/listed/uevent: Permission denied
devices/open/pointed/.: Permission denied
devices/open/socket: neither file nor folder nor link
devices/virtual/closed/.: Permission denied
)");
    EXPECT_EQ(graph.at(graph.withPath("devices/open/listed")).kind, RawObject::Kind::Device);
}

// A chain of nested devices of the same name. Its paths are longer than the kernel accepts and than
// Qt can remove.
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
        const int index = graph.withPath(SysfsPath(last));
        ASSERT_NE(index, HostObject::none);
        EXPECT_FALSE(graph.at(index).properties.member(u"uevent").isNone());
        EXPECT_EQ(unreadIn(graph).join(' '),
                  levels > shown ? last + '/' + name + ": lies too deep" : QByteArray());
    };
    expectChain("d", 2'500, 2'500);
    expectChain(QByteArray(200, 'x'), 200, (ObjectReader::maxPathSize - 7) / 201);
}

TEST(OddTrees, HaveNoMoreLevelsThanStated)
{
    MadeTree made;
    made.file("devices/a/b/uevent", "");
    const auto unreadAtLevel = [&](qsizetype level) {
        const QByteArray path = "devices" + QByteArray("/.").repeated(level - 1) + "/a";
        return TreeReader(rootOf(made)).readObject({.path = SysfsPath(path)}).unread;
    };
    EXPECT_TRUE(unreadAtLevel(ObjectReader::maxDepth - 1).empty());
    const auto unread = unreadAtLevel(ObjectReader::maxDepth);
    ASSERT_EQ(unread.size(), 1U);
    EXPECT_EQ(unread[0].path, "b");
}
} // namespace
