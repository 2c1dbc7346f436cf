// SPDX-License-Identifier: Apache-2.0
#include "checks/CheckList.h"

// Each has a file of its name in list/.
#define VANDREL_CHECKS(CHECK)                                                                      \
    CHECK(PciLinkSlow)                                                                             \
    CHECK(PciLinkNarrow)                                                                           \
    CHECK(PciErrors)                                                                               \
    CHECK(PciIommuOff)                                                                             \
    CHECK(UsbSlow)                                                                                 \
    CHECK(UsbOverCurrent)                                                                          \
    CHECK(ScsiState)                                                                               \
    CHECK(ScsiTimeouts)                                                                            \
    CHECK(ScsiErrors)                                                                              \
    CHECK(BlockReadOnly)                                                                           \
    CHECK(NvmeNotLive)                                                                             \
    CHECK(RaidDegraded)                                                                            \
    CHECK(RaidMismatch)                                                                            \
    CHECK(NetNoCarrier)                                                                            \
    CHECK(NetHalfDuplex)                                                                           \
    CHECK(NetMtuBelowUpper)                                                                        \
    CHECK(NetErrorsRising)                                                                         \
    CHECK(BondMemberDown)                                                                          \
    CHECK(TemperatureHigh)                                                                         \
    CHECK(SensorAlarm)                                                                             \
    CHECK(FanStopped)                                                                              \
    CHECK(BatteryWorn)                                                                             \
    CHECK(PowerSupplyHealth)                                                                       \
    CHECK(RuntimePowerError)                                                                       \
    CHECK(RegulatorFault)                                                                          \
    CHECK(ModuleTaints)                                                                            \
    CHECK(CpuVulnerable)                                                                           \
    CHECK(CpuOffline)                                                                              \
    CHECK(CpuMicrocode)                                                                            \
    CHECK(ClockSource)                                                                             \
    CHECK(NodeWithoutMemory)                                                                       \
    CHECK(MemoryErrors)                                                                            \
    CHECK(RemoteProcessorCrashed)                                                                  \
    CHECK(ProbeDeferred)                                                                           \
    CHECK(NoAnswer)                                                                                \
    CHECK(AttributeUnreadable)                                                                     \
    CHECK(DeviceNodeMissing)                                                                       \
    CHECK(DisplayWithoutDriver)                                                                    \
    CHECK(DriverMissing)

#define DECLARE(Name) std::unique_ptr<const Check> make##Name();
VANDREL_CHECKS(DECLARE)

const std::vector<std::unique_ptr<const Check>> &CheckList::all()
{
#define MAKE(Name) make##Name,
    static constexpr std::unique_ptr<const Check> (*makers[])() = {VANDREL_CHECKS(MAKE)};
    static const auto made = [] {
        std::vector<std::unique_ptr<const Check>> checks;
        for (const auto make : makers)
            checks.push_back(make());
        return checks;
    }();
    return made;
}

const CheckDescription &CheckList::describe(const QString &id)
{
    static const auto descriptions = [] {
        QHash<QString, CheckDescription> found;
        for (const auto &check : all()) {
            CheckDescription its = check->description();
            found.insert(its.id, std::move(its));
        }
        return found;
    }();
    static const CheckDescription unknown;
    const auto found = descriptions.constFind(id);
    return found == descriptions.constEnd() ? unknown : *found;
}
