// SPDX-License-Identifier: Apache-2.0
#include "checks/Check.h"

namespace {
class ScsiTimeouts : public Check
{
    Q_DECLARE_TR_FUNCTIONS(ScsiTimeouts)
public:
    CheckDescription description() const override
    {
        return {.id = QStringLiteral("scsi-timeouts"),
                .severity = Severity::Warning,
                .subsystems = {QStringLiteral("scsi")},
                .title = tr("Commands to a disk or drive timed out"),
                .explanation = tr("The device did not answer commands in time since the machine "
                                  "started. Failing disks, bad cables and overloaded controllers "
                                  "cause this."),
                .nextStep = tr("Read the messages of the kernel and the health data of the disk; "
                               "check its cable and power."),
                .reading = {QStringLiteral("Documentation/ABI/testing/sysfs-block-device")}};
    }

    void look(const CheckedEntry &entry, const Report &report) const override
    {
        if (const auto count = entry.number(u"iotmo_cnt"); count && *count > 0)
            report({tr("%1 commands").arg(*count), {QStringLiteral("iotmo_cnt")}});
    }
};
} // namespace

std::unique_ptr<const Check> makeScsiTimeouts()
{
    return std::make_unique<ScsiTimeouts>();
}
