// SPDX-License-Identifier: Apache-2.0
#include "checks/Check.h"

namespace {
class NvmeNotLive : public Check
{
    Q_DECLARE_TR_FUNCTIONS(NvmeNotLive)
public:
    CheckDescription description() const override
    {
        return {.id = QStringLiteral("nvme-not-live"),
                .severity = Severity::Error,
                .subsystems = {QStringLiteral("nvme")},
                .title = tr("NVMe controller is not working"),
                .explanation = tr("The controller is in another state than live, so that its disks "
                                  "cannot be used."),
                .nextStep = tr("Read the messages of the kernel. A controller that is dead needs a "
                               "restart of the machine, and often a new firmware or a new disk."),
                .reading = {QStringLiteral("drivers/nvme/host/core.c")}};
    }

    void look(const CheckedEntry &entry, const Report &report) const override
    {
        const QString state = entry.text(u"state");
        const bool isPassing =
            state == QLatin1String("new") || state == QLatin1String("resetting") ||
            state == QLatin1String("connecting") || state.startsWith(QLatin1String("deleting"));
        if (state == QLatin1String("dead") || isPassing)
            report({state,
                    {QStringLiteral("state")},
                    isPassing ? std::optional(Severity::Warning) : std::nullopt});
    }
};
} // namespace

std::unique_ptr<const Check> makeNvmeNotLive()
{
    return std::make_unique<NvmeNotLive>();
}
