// Trees of old kernels, odd ones, and hostile ones: nothing in them is left out without a word.
#include "LinuxFixture.h"
#include "tests/support/MadeTree.h"
#include "tests/support/TreePrinter.h"
#include "tests/support/TreeText.h"

namespace {
TEST(OddTrees, HaveTheSystemDevicesOfKernelsThatGaveThemNoUevent)
{
    MadeTree made;
    for (const char *device : {"clocksource/clocksource0", "cpu/cpu0", "cpu/cpu12", "edac/mc",
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
              xen_memory0
    )"));
    EXPECT_EQ(tree.at("DxBus:/cpu12")->inheritanceString().toStdString(),
              "DxCpuDevice : DxBusDevice : DxDevice : DxService : DxRegistryEntry");
    EXPECT_TRUE(tree.at("DxBus:/mc"));
    const auto *groups =
        tree.at("DxService:/system")->properties()->childWithName(QStringLiteral("cpu"));
    ASSERT_TRUE(groups);
    EXPECT_EQ(groups->children().size(), 7U);
}
} // namespace
