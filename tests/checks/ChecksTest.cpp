// SPDX-License-Identifier: Apache-2.0
#include "checks/CheckList.h"
#include "checks/CheckRun.h"
#include "model/linux/LinuxRegistryService.h"
#include "tests/support/EventLoop.h"
#include "tests/support/MadeTree.h"
#include "tests/support/RegistryTest.h"
#include "tests/support/RegistryValues.h"

using namespace values;

namespace {
// What a check must find, and what it must not although it is near, as the kernel writes it: files
// and links with "|" between them, such as "power/runtime_status=error|upper_br0->../sibling".
struct Row
{
    const char *check;
    const char *subsystem; // such as "class/net"; null: none
    const char *fires;
    const char *misses;
    const char *parent = "";
    const char *sibling = "";
    const char *place = "devices/up/entry";
};

constexpr const char *goodSlot = "max_link_speed=8.0 GT/s PCIe|max_link_width=8|class=0x060400";
constexpr const char *slowLink = "current_link_speed=2.5 GT/s PCIe|max_link_speed=8.0 GT/s PCIe";

constexpr Row rows[] = {
    {"pci-link-slow", "bus/pci", slowLink,
     "current_link_speed=2.5 GT/s PCIe|max_link_speed=2.5 GT/s PCIe", goodSlot},
    // Graphics hardware saves power by a slow link.
    {"pci-link-slow", "bus/pci",
     "current_link_speed=2.5 GT/s PCIe|max_link_speed=8.0 GT/s PCIe|class=0x010802",
     "current_link_speed=2.5 GT/s PCIe|max_link_speed=8.0 GT/s PCIe|class=0x030000", goodSlot},
    {"pci-link-slow", "bus/pci", slowLink,
     "current_link_speed=Unknown|max_link_speed=8.0 GT/s PCIe", goodSlot},
    {"pci-link-narrow", "bus/pci", "current_link_width=4|max_link_width=16",
     "current_link_width=8|max_link_width=16", goodSlot},
    {"pci-errors", "bus/pci", "aer_dev_fatal=Undefined 0\nDLP 1\nTOTAL_ERR_FATAL 1",
     "aer_dev_fatal=Undefined 0\nDLP 0\nTOTAL_ERR_FATAL 0"},
    {"pci-iommu-off", "bus/pci", "class=0x080600", "class=0x080500"},
    {"usb-slow", "bus/usb", "version= 3.20|speed=480", "version= 2.10|speed=480"},
    {"usb-over-current", "bus/usb", "over_current_count=2", "over_current_count=0"},
    {"scsi-state", "bus/scsi", "state=offline", "state=running"},
    {"scsi-timeouts", "bus/scsi", "iotmo_cnt=0x3", "iotmo_cnt=0x0|ioerr_cnt=0x2"},
    {"scsi-errors", "bus/scsi", "type=0|ioerr_cnt=0x96|iodone_cnt=0x2328",
     "type=5|ioerr_cnt=0x96|iodone_cnt=0xc8"},
    {"scsi-errors", "bus/scsi", "type=0|ioerr_cnt=0x78|iodone_cnt=0x64",
     "type=0|ioerr_cnt=0xc|iodone_cnt=0x64"},
    {"block-read-only", "class/block", "ro=1|size=8", "ro=1|size=0", "", "", "devices/up/sdx"},
    {"nvme-not-live", "class/nvme", "state=dead", "state=live"},
    {"raid-degraded", "class/block", "md/degraded=1|md/level=raid5",
     "md/degraded=0|md/level=raid5"},
    {"raid-mismatch", "class/block", "md/mismatch_cnt=128|md/level=raid5",
     "md/mismatch_cnt=0|md/level=raid5"},
    {"net-no-carrier", "class/net", "flags=0x1003|carrier=0", "flags=0x1002|carrier=0"},
    {"net-no-carrier", "class/net", "flags=0x1003|carrier=0",
     "flags=0x1003|carrier=0|bridge/bridge_id=8000.000000000000"},
    {"net-half-duplex", "class/net", "flags=0x1003|duplex=half|carrier=1|speed=100",
     "flags=0x1003|duplex=half|carrier=0|speed=100"},
    {"net-mtu-below-upper", "class/net", "mtu=1400|upper_x->../sibling",
     "mtu=1500|upper_x->../sibling", "", "mtu=1500"},
    {"bond-member-down", "class/net", "bonding_slave/mii_status=down",
     "bonding_slave/mii_status=up"},
    {"temperature-high", "class/thermal",
     "temp=101000|trip_point_0_temp=100000|trip_point_0_type=critical",
     "temp=101000|trip_point_0_temp=100000|trip_point_0_type=passive"},
    {"sensor-alarm", "class/hwmon", "fan1_fault=1", "fan1_fault=0"},
    {"fan-stopped", "class/hwmon", "fan1_input=0|fan1_target=900", "fan1_input=0|fan1_target=0"},
    {"battery-worn", "class/power_supply", "energy_full=29500000|energy_full_design=50000000",
     "energy_full=30000000|energy_full_design=50000000"},
    {"power-supply-health", "class/power_supply", "health=Dead", "health=Unknown"},
    {"runtime-power-error", nullptr, "power/runtime_status=error",
     "power/runtime_status=suspended"},
    {"regulator-fault", "class/regulator", "under_voltage=1", "under_voltage=0"},
    {"module-taints", nullptr, "initstate=live|taint=OE", "initstate=live|taint=", "", "",
     "module/driver"},
    {"cpu-vulnerable", nullptr, "vulnerabilities/mds=Vulnerable: No microcode",
     "vulnerabilities/mds=Mitigation: Clear CPU buffers", "", "", "devices/system/cpu"},
    {"cpu-offline", "bus/cpu", "online=0", "online=1"},
    {"cpu-microcode-differs", "bus/cpu", "microcode/version=0xf2", "microcode/version=0xf0", "",
     "microcode/version=0xf0"},
    {"clock-source", "bus/clocksource",
     "available_clocksource=tsc hpet acpi_pm |current_clocksource=hpet",
     "available_clocksource=tsc hpet acpi_pm |current_clocksource=tsc"},
    {"node-without-memory", "bus/node",
     "cpulist=0-3|meminfo=Node 1 MemTotal: 0 kB\nNode 1 MemFree: 0 kB",
     "cpulist=|meminfo=Node 1 MemTotal: 0 kB\nNode 1 MemFree: 0 kB"},
    {"memory-errors", "bus/edac", "ue_count=1|ce_count=0", "ue_count=0|ce_count=0"},
    {"remote-processor-crashed", "class/remoteproc", "state=crashed", "state=offline"},
    {"probe-deferred", nullptr, "waiting_for_supplier=1", "waiting_for_supplier=0"},
    {"device-node-missing", "class/misc", "dev=10:62|uevent=MAJOR=10\nMINOR=62\nDEVNAME=gone",
     "dev=10:62|uevent=MAJOR=10\nMINOR=62\nDEVNAME=there"},
    {"display-without-driver", "bus/pci", "class=0x030000|boot_vga=1",
     "class=0x030000|boot_vga=1|driver->../../../bus/pci/drivers/i915"},
    {"driver-missing", "bus/pci", "class=0x020000|modalias=pci:v00001234",
     "class=0x060000|modalias=pci:v00001234"},
};

class FakeNodes : public DeviceNodes
{
public:
    bool has(const QString &name) const override { return name == QLatin1String("there"); }
};

// A device below another, beside a third.
class ChecksTest : public RegistryTest
{
protected:
    static void makeDevice(MadeTree &tree, const QByteArray &place, const char *subsystem,
                           const QByteArray &content)
    {
        tree.folder(place.constData());
        const QByteArray top = QByteArray("../").repeated(place.count('/') + 1);
        if (subsystem)
            tree.link((place + "/subsystem").constData(), (top + subsystem).constData());
        bool hasUevent = place.startsWith("module/");
        for (const QByteArray &item : content.split('|')) {
            const auto arrow = item.indexOf("->");
            const auto equals = item.indexOf('=');
            if (arrow > 0)
                tree.link((place + '/' + item.left(arrow)).constData(),
                          item.mid(arrow + 2).constData());
            else if (equals > 0)
                tree.file((place + '/' + item.left(equals)).constData(),
                          item.mid(equals + 1) + '\n');
            hasUevent |= item.startsWith("uevent=");
        }
        if (!hasUevent)
            tree.file((place + "/uevent").constData(), "");
    }
    static void measure(CheckedRegistry &registry, TavDataStore &store)
    {
        Measurement measurement(*store.service(), store.registryEntries(), 1);
        bool isFinished = false;
        QObject::connect(&measurement, &Measurement::finished, [&] { isFinished = true; });
        measurement.start();
        ASSERT_TRUE(waitFor([&] { return isFinished; }));
        for (const EntryRef &entry : store.registryEntries())
            registry.add(*entry, measurement.tables().value(entry->entryTag()));
        registry.finish();
    }
    static int found(const Row &row, const char *content)
    {
        MadeTree tree;
        tree.folder("bus/pci/drivers/i915");
        makeDevice(tree, "devices/up", row.subsystem, row.parent);
        makeDevice(tree, "devices/up/sibling", row.subsystem, row.sibling);
        makeDevice(tree, row.place, row.subsystem, content);
        if (row.subsystem) {
            const QByteArray subsystem = row.subsystem;
            const bool isBus = subsystem.startsWith("bus/");
            const QByteArray list = subsystem + (isBus ? "/devices" : "");
            tree.folder(list.constData());
            for (const QByteArray place : {"devices/up", "devices/up/sibling", row.place})
                tree.link((list + place.mid(place.lastIndexOf('/'))).constData(),
                          ((isBus ? "../../../" : "../../") + place).constData());
        }
        auto service = LinuxRegistryService::create(tree.sys());
        const auto store = TavDataStore::initFromDxRegistry(**service);
        CheckedRegistry registry;
        registry.setDeviceNodes(std::make_shared<FakeNodes>());
        measure(registry, *store);
        const QString path = QStringLiteral("/sys/") + QLatin1String(row.place);
        int count = 0;
        for (const Finding &finding : CheckRun({QLatin1String(row.check)}).over(registry).findings)
            count += store->entryWithTag(finding.entryTag)->kernelPath() == path;
        return count;
    }
};

TEST_F(ChecksTest, EachFiresAndItsNearMissDoesNot)
{
    // Below.
    QSet<QString> tested{QStringLiteral("net-errors-rising"), QStringLiteral("no-answer"),
                         QStringLiteral("attribute-unreadable")};
    for (const Row &row : rows) {
        EXPECT_EQ(found(row, row.fires), 1) << row.check << ": " << row.fires;
        EXPECT_EQ(found(row, row.misses), 0) << row.check << ": " << row.misses;
        tested.insert(QLatin1String(row.check));
    }
    for (const auto &check : CheckList::all())
        EXPECT_TRUE(tested.contains(check->description().id))
            << check->description().id.toStdString();
}

RegistryValue of(const char *subsystem,
                 std::initializer_list<std::pair<const char *, RegistryValue>> properties)
{
    RegistryValue::Members members{{key("subsystem"), text(subsystem)}};
    for (const auto &[name, value] : properties)
        members.push_back({key(name), value});
    return RegistryValue::dictionary(std::move(members));
}

// Why attributes are missing decides.
TEST_F(ChecksTest, TellFaultsFromAttributesThatAreLeftOut)
{
    FakeLiveService service;
    TreeBuilder tree(service);
    tree.plane("DxService", "Root\n  Host\n    dog : DxWatchdogDevice");
    const auto findings = [&](const char *reason) {
        service.setProperties(
            tree["dog"], of("class/watchdog",
                            {{"DxUnreadAttributes", dictionary({{"timeleft", text(reason)}})}}));
        const auto store = TavDataStore::initFromDxRegistry(service);
        QStringList ids;
        for (const Finding &finding : CheckRun().over(CheckedRegistry(*store)).findings)
            ids.append(finding.check);
        return ids.join(u' ').toStdString();
    };
    EXPECT_EQ(findings("did not answer"), "no-answer");
    EXPECT_EQ(findings("Input/output error"), "attribute-unreadable");
    EXPECT_EQ(findings("Operation not supported"), "");
    EXPECT_EQ(findings("not read: can wake or lock up the device"), "");
}

class FakeModules : public ModuleCatalog
{
public:
    std::vector<Module> modulesFor(const QString &modalias) const override
    {
        return modalias == QLatin1String("pci:known") ? found : std::vector<Module>();
    }
    std::vector<Module> found;
};

// Why a device has no driver depends on which modules the machine has, and which are loaded.
TEST(DriverMissing, SaysWhichModuleIsMissing)
{
    FakeLiveService service;
    TreeBuilder tree(service);
    tree.plane("DxService", "Root\n  Host\n    card : DxPciDevice\n    loaded : DxModule");
    service.setKernelPath(tree["loaded"], QStringLiteral("/sys/module/loaded"));
    const auto look = [&](const char *modalias, qint64 pciClass, ModuleCatalog::Module module) {
        service.setProperties(tree["card"],
                              of("bus/pci", {{"modalias", text(modalias)},
                                             {"class", number(static_cast<quint64>(pciClass))}}));
        const auto store = TavDataStore::initFromDxRegistry(service);
        const auto modules = std::make_shared<FakeModules>();
        modules->found = {std::move(module)};
        CheckedRegistry registry;
        registry.setModules(modules);
        registry.add(*store);
        const auto findings = CheckRun().over(registry).findings;
        return findings.empty() ? std::string() : findings.front().detail.toStdString();
    };
    constexpr qint64 network = 0x020000;
    constexpr qint64 bridge = 0x060000;
    const ModuleCatalog::Module absent{QStringLiteral("absent")};
    const ModuleCatalog::Module loaded{QStringLiteral("loaded")};
    EXPECT_EQ(look("pci:strange", network, absent),
              "network; this kernel has no module for it: pci:strange");
    EXPECT_EQ(look("pci:strange", bridge, absent), "");
    EXPECT_EQ(look("pci:known", network, absent), "the module absent exists and is not loaded");
    EXPECT_EQ(look("pci:known", bridge, absent), "the module absent exists and is not loaded");
    EXPECT_EQ(look("pci:known", network, {QStringLiteral("absent"), false, true}),
              "the module absent exists and is kept from loading");
    EXPECT_EQ(look("pci:known", network, {QStringLiteral("fixed"), true}),
              "network; its driver fixed is built into the kernel and did not take it");
    EXPECT_EQ(look("pci:known", network, loaded),
              "network; its module loaded is loaded and did not take it");
    EXPECT_EQ(look("pci:known", bridge, loaded), "");
}

// Counters are compared with a reading a moment before, and other values are read on request.
TEST(Measurement, FindsCountersThatRise)
{
    FakeLiveService service;
    TreeBuilder tree(service);
    tree.plane("DxService", "Root\n  Host\n    quiet : DxNetDevice\n    lossy : DxNetDevice");
    const auto count = [&](const char *name, quint64 errors) {
        service.setProperties(
            tree[name],
            of("class/net", {{"statistics", dictionary({{"rx_errors", number(errors)},
                                                        {"rx_dropped", number(errors)}})}}));
    };
    for (const char *name : {"quiet", "lossy"}) {
        service.setKernelPath(tree[name], QStringLiteral("/sys/devices/") + QLatin1String(name));
        count(name, 7);
    }
    const auto store = TavDataStore::initFromDxRegistry(service);
    Measurement measurement(service, store->registryEntries(), 50);
    bool isFinished = false;
    QObject::connect(&measurement, &Measurement::finished, [&] { isFinished = true; });
    measurement.start();
    ASSERT_TRUE(waitFor([&] { return service.samples() == 2; }));
    count("lossy", 9);
    ASSERT_TRUE(waitFor([&] { return isFinished; }));
    CheckedRegistry registry;
    for (const EntryRef &entry : store->registryEntries())
        registry.add(*entry, measurement.tables().value(entry->entryTag()));
    registry.finish();
    const auto result = CheckRun().over(registry);
    ASSERT_EQ(result.findings.size(), 1U);
    EXPECT_EQ(result.findings[0].entryTag, tree["lossy"]);
    EXPECT_EQ(result.findings[0].detail.toStdString(), "rx_errors: 2 more");
}

// What was found at unchanged entries stays, without being looked for again.
TEST(CheckRun, LooksOnlyAtWhatChanged)
{
    FakeLiveService service;
    TreeBuilder tree(service);
    tree.plane("DxService",
               "Root\n  Host\n    a : DxUsbDevice\n    b : DxUsbDevice\n    c : DxUsbDevice");
    const auto set = [&](const char *name, quint64 overCurrents) {
        service.setProperties(tree[name],
                              of("bus/usb", {{"over_current_count", number(overCurrents)}}));
    };
    set("a", 1);
    set("b", 1);
    set("c", 0);
    const auto store = TavDataStore::initFromDxRegistry(service);
    const CheckedRegistry before(*store);
    const auto first = CheckRun().over(before);
    ASSERT_EQ(first.findings.size(), 2U);
    set("b", 0);
    set("c", 3);
    store->update();
    CheckedRegistry after;
    for (const EntryRef &entry : store->registryEntries())
        after.add(*entry);
    after.finish(&before);
    const auto unchanged = [&](const char *name) {
        return std::any_of(after.entries().begin(), after.entries().end(), [&](const auto &entry) {
            return entry.tag() == tree[name] && entry.isUnchanged();
        });
    };
    EXPECT_TRUE(unchanged("a"));
    EXPECT_FALSE(unchanged("b"));
    EXPECT_EQ(CheckRun().over(after, first).findings, CheckRun().over(after).findings);
    // From a result that cannot be right, it can be seen which entry was not looked at.
    CheckRun::Result wrong = first;
    wrong.findings.front().detail = QStringLiteral("kept");
    EXPECT_EQ(CheckRun().over(after, wrong).findings.front().detail, QStringLiteral("kept"));
}

class HastyCheck : public Check
{
public:
    explicit HastyCheck(const char *id, bool givesUp)
        : id_(QLatin1String(id))
        , givesUp_(givesUp)
    {}
    CheckDescription description() const override
    {
        CheckDescription its;
        its.id = id_;
        return its;
    }
    void look(const CheckedEntry &, const Report &report) const override
    {
        report({QStringLiteral("seen"), {}});
        if (givesUp_)
            throw std::runtime_error("no more");
    }

private:
    QString id_;
    bool givesUp_;
};

TEST(CheckRun, LosesOnlyTheFindingsOfACheckThatGivesUp)
{
    FakeLiveService service;
    TreeBuilder(service).plane("DxService", "Root\n  Host");
    const auto store = TavDataStore::initFromDxRegistry(service);
    const HastyCheck bad("bad", true);
    const HastyCheck good("good", false);
    const auto result =
        CheckRun(std::vector<const Check *>{&bad, &good}).over(CheckedRegistry(*store));
    EXPECT_EQ(result.failed, QStringList(QStringLiteral("bad")));
    ASSERT_EQ(result.findings.size(), 2U);
    EXPECT_EQ(result.findings[0].check, QStringLiteral("good"));
}

TEST(CheckList, DescribesEachCheckOnce)
{
    QSet<QString> ids;
    for (const auto &check : CheckList::all()) {
        const CheckDescription its = check->description();
        EXPECT_FALSE(ids.contains(its.id)) << its.id.toStdString();
        ids.insert(its.id);
        for (const QString &text : {its.title, its.explanation, its.nextStep})
            EXPECT_FALSE(text.isEmpty()) << its.id.toStdString();
    }
}
} // namespace
