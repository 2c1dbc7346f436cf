// SPDX-License-Identifier: Apache-2.0
#include "checks/Check.h"

namespace {
class ScsiState : public Check
{
    Q_DECLARE_TR_FUNCTIONS(ScsiState)
public:
    CheckDescription description() const override
    {
        return {.id = QStringLiteral("scsi-state"),
                .severity = Severity::Error,
                .subsystems = {QStringLiteral("scsi")},
                .title = tr("Disk or drive does not take commands"),
                .explanation =
                    tr("The kernel has stopped sending commands to the device, because it "
                       "failed or was blocked."),
                .nextStep = tr("Read the messages of the kernel. Check power and cables; a device "
                               "that is offline may come back when it is scanned again."),
                .reading = {QStringLiteral("Documentation/driver-api/scsi.rst")}};
    }

    void look(const CheckedEntry &entry, const Report &report) const override
    {
        const QString state = entry.text(u"state");
        const QStringList properties{QStringLiteral("state")};
        if (state == QLatin1String("offline") || state == QLatin1String("transport-offline"))
            report({state, properties});
        else if (state == QLatin1String("blocked") || state == QLatin1String("quiesce"))
            report({state, properties, Severity::Warning});
    }
};
} // namespace

std::unique_ptr<const Check> makeScsiState()
{
    return std::make_unique<ScsiState>();
}
