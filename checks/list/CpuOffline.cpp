// SPDX-License-Identifier: Apache-2.0
#include "checks/Check.h"

namespace {
class CpuOffline : public Check
{
    Q_DECLARE_TR_FUNCTIONS(CpuOffline)
public:
    CheckDescription description() const override
    {
        return {.id = QStringLiteral("cpu-offline"),
                .severity = Severity::Note,
                .subsystems = {QStringLiteral("cpu")},
                .title = tr("Processor is turned off"),
                .explanation =
                    tr("The kernel does not use this processor. Somebody turned it off, or "
                       "it failed to start."),
                .nextStep = tr("Write 1 to its attribute \"online\" to turn it on."),
                .reading = {QStringLiteral("Documentation/ABI/testing/sysfs-devices-system-cpu")}};
    }

    void look(const CheckedEntry &entry, const Report &report) const override
    {
        if (entry.number(u"online") == 0)
            report({QString(), {QStringLiteral("online")}});
    }
};
} // namespace

std::unique_ptr<const Check> makeCpuOffline()
{
    return std::make_unique<CpuOffline>();
}
