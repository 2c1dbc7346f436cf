// SPDX-License-Identifier: Apache-2.0
#include "checks/CheckList.h"
#include "checks/CheckRun.h"
#include "tests/support/EventLoop.h"
#include "tests/support/RegistryTest.h"
#include "tests/support/RegistryValues.h"

using namespace values;

namespace {
using Properties = std::initializer_list<std::pair<const char *, RegistryValue>>;

// What a check must find, and what it must not although it is near.
struct Row
{
    const char *check;
    const char *className;
    RegistryValue fires;
    RegistryValue misses;
    RegistryValue parent = {};
    RegistryValue sibling = {};
};

RegistryValue of(const char *subsystem, Properties properties)
{
    RegistryValue::Members members{{key("subsystem"), text(subsystem)}};
    for (const auto &[name, value] : properties)
        members.push_back({key(name), value});
    return RegistryValue::dictionary(std::move(members));
}
RegistryValue pci(Properties properties)
{
    return of("bus/pci", properties);
}
RegistryValue net(Properties properties)
{
    return of("class/net", properties);
}

std::vector<Row> rows()
{
    const RegistryValue bridge = pci({{"max_link_speed", text("8.0 GT/s PCIe")},
                                      {"max_link_width", number(8)},
                                      {"class", number(0x060400)}});
    const RegistryValue slow = text("2.5 GT/s PCIe");
    const RegistryValue fast = text("8.0 GT/s PCIe");
    const auto errors = [](const char *attribute, const char *total, quint64 count) {
        return pci({{attribute, dictionary({{total, number(count)}})}});
    };
    const auto raid = [](const char *attribute, quint64 count) {
        return of("class/block",
                  {{"md", dictionary({{attribute, number(count)}, {"level", text("raid5")}})}});
    };
    return {
        {"pci-link-slow", "DxPciDevice",
         pci({{"current_link_speed", slow}, {"max_link_speed", fast}}),
         pci({{"current_link_speed", slow}, {"max_link_speed", slow}}), bridge},
        {"pci-link-slow", "DxPciDevice",
         pci({{"current_link_speed", slow}, {"max_link_speed", fast}, {"class", number(0x010802)}}),
         pci({{"current_link_speed", slow}, {"max_link_speed", fast}, {"class", number(0x030000)}}),
         bridge},
        {"pci-link-slow", "DxPciDevice",
         pci({{"current_link_speed", slow}, {"max_link_speed", fast}}),
         pci({{"current_link_speed", text("Unknown")}, {"max_link_speed", fast}}), bridge},
        {"pci-link-narrow", "DxPciDevice",
         pci({{"current_link_width", number(4)}, {"max_link_width", number(16)}}),
         pci({{"current_link_width", number(8)}, {"max_link_width", number(16)}}), bridge},
        {"pci-errors", "DxPciDevice", errors("aer_dev_fatal", "TOTAL_ERR_FATAL", 1),
         errors("aer_dev_fatal", "TOTAL_ERR_FATAL", 0)},
        {"pci-iommu-off", "DxPciDevice", pci({{"class", number(0x080600)}}),
         pci({{"class", number(0x080500)}})},
        {"usb-slow", "DxUsbDevice",
         of("bus/usb", {{"version", text(" 3.20")}, {"speed", number(480)}}),
         of("bus/usb", {{"version", text(" 2.10")}, {"speed", number(480)}})},
        {"usb-over-current", "DxUsbDevice", of("bus/usb", {{"over_current_count", number(2)}}),
         of("bus/usb", {{"over_current_count", number(0)}})},
        {"scsi-state", "DxScsiDevice", of("bus/scsi", {{"state", text("offline")}}),
         of("bus/scsi", {{"state", text("running")}})},
        {"scsi-timeouts", "DxScsiDevice", of("bus/scsi", {{"iotmo_cnt", number(3)}}),
         of("bus/scsi", {{"iotmo_cnt", number(0)}, {"ioerr_cnt", number(2)}})},
        {"scsi-errors", "DxScsiDevice",
         of("bus/scsi",
            {{"type", number(0)}, {"ioerr_cnt", number(150)}, {"iodone_cnt", number(9000)}}),
         of("bus/scsi",
            {{"type", number(5)}, {"ioerr_cnt", number(150)}, {"iodone_cnt", number(200)}})},
        {"scsi-errors", "DxScsiDevice",
         of("bus/scsi",
            {{"type", number(0)}, {"ioerr_cnt", number(120)}, {"iodone_cnt", number(100)}}),
         of("bus/scsi",
            {{"type", number(0)}, {"ioerr_cnt", number(12)}, {"iodone_cnt", number(100)}})},
        {"block-read-only", "DxBlockDisk",
         of("class/block", {{"ro", number(1)}, {"size", number(8)}}),
         of("class/block", {{"ro", number(1)}, {"size", number(0)}})},
        {"nvme-not-live", "DxNvmeDevice", of("class/nvme", {{"state", text("dead")}}),
         of("class/nvme", {{"state", text("live")}})},
        {"raid-degraded", "DxBlockDisk", raid("degraded", 1), raid("degraded", 0)},
        {"raid-mismatch", "DxBlockDisk", raid("mismatch_cnt", 128), raid("mismatch_cnt", 0)},
        {"net-no-carrier", "DxNetDevice", net({{"flags", number(0x1003)}, {"carrier", number(0)}}),
         net({{"flags", number(0x1002)}, {"carrier", number(0)}})},
        {"net-no-carrier", "DxNetDevice", net({{"flags", number(0x1003)}, {"carrier", number(0)}}),
         net({{"flags", number(0x1003)}, {"carrier", number(0)}, {"bridge", dictionary({})}})},
        {"net-half-duplex", "DxNetDevice",
         net({{"duplex", text("half")}, {"carrier", number(1)}, {"speed", number(100)}}),
         net({{"duplex", text("half")}, {"carrier", number(0)}})},
        {"net-mtu-below-upper",
         "DxNetDevice",
         net({{"mtu", number(1400)}, {"upper_x", text("devices/sibling")}}),
         net({{"mtu", number(1500)}, {"upper_x", text("devices/sibling")}}),
         {},
         net({{"mtu", number(1500)}})},
        {"bond-member-down", "DxNetDevice",
         net({{"bonding_slave", dictionary({{"mii_status", text("down")}})}}),
         net({{"bonding_slave", dictionary({{"mii_status", text("up")}})}})},
        {"temperature-high", "DxThermalDevice",
         of("class/thermal", {{"temp", number(101'000)},
                              {"trip_point_0_temp", number(100'000)},
                              {"trip_point_0_type", text("critical")}}),
         of("class/thermal", {{"temp", number(101'000)},
                              {"trip_point_0_temp", number(100'000)},
                              {"trip_point_0_type", text("passive")}})},
        {"sensor-alarm", "DxHwmonDevice", of("class/hwmon", {{"fan1_fault", number(1)}}),
         of("class/hwmon", {{"fan1_fault", number(0)}})},
        {"fan-stopped", "DxHwmonDevice",
         of("class/hwmon", {{"fan1_input", number(0)}, {"fan1_target", number(900)}}),
         of("class/hwmon", {{"fan1_input", number(0)}, {"fan1_target", number(0)}})},
        {"battery-worn", "DxPowerSupplyDevice",
         of("class/power_supply",
            {{"energy_full", number(59)}, {"energy_full_design", number(100)}}),
         of("class/power_supply",
            {{"energy_full", number(60)}, {"energy_full_design", number(100)}})},
        {"power-supply-health", "DxPowerSupplyDevice",
         of("class/power_supply", {{"health", text("Dead")}}),
         of("class/power_supply", {{"health", text("Unknown")}})},
        {"runtime-power-error", "DxDevice",
         dictionary({{"power", dictionary({{"runtime_status", text("error")}})}}),
         dictionary({{"power", dictionary({{"runtime_status", text("suspended")}})}})},
        {"regulator-fault", "DxRegulatorDevice",
         of("class/regulator", {{"under_voltage", number(1)}}),
         of("class/regulator", {{"under_voltage", number(0)}})},
        {"module-taints", "DxModule", dictionary({{"taint", text("OE")}}),
         dictionary({{"taint", text("")}})},
        {"cpu-vulnerable", "DxDevice",
         dictionary({{"vulnerabilities", dictionary({{"mds", text("Vulnerable: No microcode")}})}}),
         dictionary({{"vulnerabilities", dictionary({{"mds", text("Mitigation: Clear")}})}})},
        {"cpu-offline", "DxCpuDevice", of("bus/cpu", {{"online", number(0)}}),
         of("bus/cpu", {{"online", number(1)}})},
        {"cpu-microcode-differs",
         "DxCpuDevice",
         of("bus/cpu", {{"microcode", dictionary({{"version", number(2)}})}}),
         of("bus/cpu", {{"microcode", dictionary({{"version", number(1)}})}}),
         {},
         of("bus/cpu", {{"microcode", dictionary({{"version", number(1)}})}})},
        {"clock-source", "DxClocksourceDevice",
         of("bus/clocksource", {{"available_clocksource", text("tsc hpet acpi_pm ")},
                                {"current_clocksource", text("hpet")}}),
         of("bus/clocksource", {{"available_clocksource", text("tsc hpet acpi_pm ")},
                                {"current_clocksource", text("tsc")}})},
        {"node-without-memory", "DxNodeDevice",
         of("bus/node", {{"cpulist", text("0-3")},
                         {"meminfo", dictionary({{"Node 1 MemTotal", text("0 kB")}})}}),
         of("bus/node",
            {{"cpulist", text("")}, {"meminfo", dictionary({{"Node 1 MemTotal", text("0 kB")}})}})},
        {"memory-errors", "DxEdacDevice", of("bus/edac", {{"ue_count", number(1)}}),
         of("bus/edac", {{"ue_count", number(0)}, {"ce_count", number(0)}})},
        {"remote-processor-crashed", "DxRemoteprocDevice",
         of("class/remoteproc", {{"state", text("crashed")}}),
         of("class/remoteproc", {{"state", text("offline")}})},
        {"probe-deferred", "DxDevice", dictionary({{"waiting_for_supplier", number(1)}}),
         dictionary({{"waiting_for_supplier", number(0)}})},
        {"no-answer", "DxDevice",
         dictionary({{"DxUnreadAttributes", dictionary({{"temp", text("did not answer")}})}}),
         dictionary({{"DxUnreadAttributes", dictionary({{"temp", text("not read: slow")}})}})},
        {"attribute-unreadable", "DxWatchdogDevice",
         of("class/watchdog",
            {{"DxUnreadAttributes", dictionary({{"timeleft", text("Input/output error")}})}}),
         of("class/watchdog",
            {{"DxUnreadAttributes", dictionary({{"timeleft", text("Operation not supported")}})}})},
        {"device-node-missing", "DxInputDevice",
         dictionary({{"dev", text("13:64")}, {"uevent", dictionary({{"DEVNAME", text("gone")}})}}),
         dictionary(
             {{"dev", text("13:64")}, {"uevent", dictionary({{"DEVNAME", text("there")}})}})},
        {"display-without-driver", "DxPciDevice",
         pci({{"class", number(0x030000)}, {"boot_vga", number(1)}}),
         pci({{"class", number(0x030000)},
              {"boot_vga", number(1)},
              {"driver", text("bus/pci/drivers/i915")}})},
        {"driver-missing", "DxPciDevice",
         pci({{"class", number(0x020000)}, {"modalias", text("pci:v1")}}),
         pci({{"class", number(0x060000)}, {"modalias", text("pci:v1")}})},
    };
}

class FakeNodes : public DeviceNodes
{
public:
    bool has(const QString &name) const override { return name == QLatin1String("there"); }
};

// An entry below another, beside a third.
class ChecksTest : public RegistryTest
{
protected:
    std::size_t found(const Row &row, const RegistryValue &properties)
    {
        FakeLiveService service;
        TreeBuilder tree(service);
        tree.plane("DxService", (QByteArray("Root\n  Host\n    up : DxPciDevice\n      entry : ") +
                                 row.className + "\n    sibling : " + row.className)
                                    .constData());
        service.setProperties(tree["entry"], properties);
        service.setProperties(tree["up"], row.parent);
        service.setProperties(tree["sibling"], row.sibling);
        for (const char *name : {"up", "entry", "sibling"})
            service.setKernelPath(tree[name],
                                  QStringLiteral("/sys/devices/sd") + QLatin1String(name));
        service.setKernelPath(tree["sibling"], QStringLiteral("/sys/devices/sibling"));
        const auto store = TavDataStore::initFromDxRegistry(service);
        CheckedRegistry registry;
        registry.setDeviceNodes(std::make_shared<FakeNodes>());
        registry.add(*store);
        const auto result = CheckRun({QLatin1String(row.check)}).over(registry);
        return static_cast<std::size_t>(std::count_if(
            result.findings.begin(), result.findings.end(),
            [&](const Finding &finding) { return finding.entryTag == tree["entry"]; }));
    }
};

TEST_F(ChecksTest, EachFiresAndItsNearMissDoesNot)
{
    QSet<QString> tested;
    for (const Row &row : rows()) {
        EXPECT_EQ(found(row, row.fires), 1U) << row.check;
        EXPECT_EQ(found(row, row.misses), 0U) << row.check;
        tested.insert(QLatin1String(row.check));
    }
    tested.insert(QStringLiteral("net-errors-rising")); // below
    for (const auto &check : CheckList::all())
        EXPECT_TRUE(tested.contains(check->description().id))
            << check->description().id.toStdString();
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
        service.setProperties(
            tree["card"],
            pci({{"modalias", text(modalias)}, {"class", number(static_cast<quint64>(pciClass))}}));
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
        service.setProperties(tree[name],
                              net({{"statistics", dictionary({{"rx_errors", number(errors)},
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
