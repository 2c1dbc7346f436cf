#include "model/linux/AttributePolicy.h"

#include "tests/support/QtPrinters.h"

#include <gtest/gtest.h>

namespace {
using Rule = AttributePolicy::Rule;
using Folder = AttributePolicy::Folder;
using Context = AttributePolicy::Context;

TEST(AttributePolicy, ReadsNothingThatTriggersAndOnlyOnRequestWhatWakes)
{
    const Context pci{.subsystem = "pci"};
    const Context asleep{.subsystem = "pci", .isSuspended = true};
    const Context gpu{.subsystem = "pci", .driver = "amdgpu"};
    const Context chip{.subsystem = "i2c", .driver = "lm75", .path = "devices/i2c-0/0-0048"};
    const Context port{.path = "devices/usb1/1-0:1.0/usb1-port12"};
    const Context down{.subsystem = "net", .isInterfaceDown = true};
    const Context wall{.subsystem = "power_supply"};
    struct Case
    {
        Context context;
        const char *folder;
        const char *name;
        Rule rule;
    };
    const Case cases[] = {
        {pci, "", "resource", Rule::Always},
        {pci, "", "resource0", Rule::Never},
        {pci, "", "resource12_wc", Rule::Never},
        {pci, "", "current_link_speed", Rule::Always},
        {asleep, "", "current_link_speed", Rule::OnRequest},
        {asleep, "", "max_link_width", Rule::OnRequest},
        {pci, "link", "l1_aspm", Rule::Always},
        {{.subsystem = "pnp"}, "", "resources", Rule::Always},
        {pci, "", "config", Rule::OnRequest},
        {pci, "", "psp_vbflash", Rule::Never},
        {pci, "", "pcie_bw", Rule::Always}, // another driver's
        {gpu, "", "pcie_bw", Rule::OnRequest},
        {gpu, "", "mem_busy_percent", Rule::OnRequest},
        {{.subsystem = "ptp"}, "", "fifo", Rule::Never},
        {{.subsystem = "scsi_host"}, "", "mbox", Rule::Never},
        {{.subsystem = "scsi_host"}, "", "nvram", Rule::Never},
        {{.subsystem = "rtc"}, "", "nvram", Rule::Always},
        {chip, "", "temp1_input", Rule::OnRequest}, // as old drivers keep it
        {chip, "", "temp1_label", Rule::Always},
        {chip, "", "pwm1", Rule::OnRequest},
        {chip, "", "alarms", Rule::OnRequest},
        {chip, "", "name", Rule::Always},
        {{.subsystem = "hwmon"}, "", "temp12_max", Rule::OnRequest},
        {{.subsystem = "hwmon"}, "", "update_interval", Rule::Always},
        {port, "", "disable", Rule::OnRequest},
        {port, "", "connect_type", Rule::Always},
        {{.subsystem = "net"}, "", "speed", Rule::Always},
        {down, "", "speed", Rule::OnRequest},
        {down, "statistics", "carrier_errors", Rule::Always},
        {wall, "", "type", Rule::Always},
        {wall, "", "capacity", Rule::OnRequest},
        {{.driver = "ufshcd-qcom"}, "flags", "wb_enable", Rule::OnRequest},
        {{.driver = "exynos-ufshc"}, "flags", "wb_enable", Rule::OnRequest},
        {{.subsystem = "nvmem"}, "cells", "mac-address@0,0", Rule::OnRequest},
        {{.subsystem = "drm"}, "power", "rc6_residency_ms", Rule::OnRequest},
        {{.subsystem = "pci"}, "power", "runtime_status", Rule::Always},
        {{.path = "devices/pwmchip0/pwm1"}, "", "capture", Rule::Never},
        {{.path = "devices/virtual/misc/pkey"}, "protkey", "protkey_aes_128", Rule::Never},
        {{.path = "devices/1/enclosure/0:0:8:0/Slot 1"}, "", "status", Rule::OnRequest},
        {{.path = "devices/slow"}, "", "status", Rule::Always},
        {{.subsystem = "iio"}, "", "in_voltage0_raw", Rule::OnRequest},
        {{.subsystem = "iio"}, "", "in_voltage0_scale", Rule::Always},
        {{.subsystem = "cpu"}, "acpi_cppc", "highest_perf", Rule::OnRequest},
        {{.subsystem = "hdaudio"}, "widgets/01", "caps", Rule::OnRequest},
        {{.folder = Folder::Bus}, "slots/12", "power", Rule::OnRequest},
        {{.folder = Folder::Bus}, "slots/12", "address", Rule::Always},
        {{.folder = Folder::Driver}, "", "bind", Rule::Never},
        {{.subsystem = "vtconsole"}, "", "bind", Rule::Always},
        {{.folder = Folder::Class}, "", "hot_add", Rule::Never},
        {{.folder = Folder::Class}, "", "export", Rule::Never},
        {{.folder = Folder::Class}, "", "bonding_masters", Rule::Always},
        {{.folder = Folder::Driver}, "", "uevent", Rule::Never},
        {{.folder = Folder::Device}, "", "uevent", Rule::Always},
        {{.folder = Folder::Module}, "parameters", "config", Rule::Always},
    };
    for (const auto &[context, folder, name, rule] : cases) {
        const AttributePolicy policy(context);
        EXPECT_EQ(policy.rule(folder, name), rule) << folder << '/' << name;
        const bool isToBeWritten = rule == Rule::Never && (name == QByteArrayView("uevent") ||
                                                           name == QByteArrayView("bind"));
        EXPECT_EQ(policy.reason(folder, name).isNull(), rule == Rule::Always || isToBeWritten)
            << name;
    }
    EXPECT_TRUE(AttributePolicy::skipsDirectory("unit_descriptor"));
    EXPECT_FALSE(AttributePolicy::skipsDirectory("queue"));
}
} // namespace
