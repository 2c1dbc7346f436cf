// SPDX-License-Identifier: Apache-2.0
#include "checks/Check.h"

namespace {
class RaidDegraded : public Check
{
    Q_DECLARE_TR_FUNCTIONS(RaidDegraded)
public:
    CheckDescription description() const override
    {
        return {.id = QStringLiteral("raid-degraded"),
                .severity = Severity::Error,
                .subsystems = {QStringLiteral("block")},
                .title = tr("RAID array has lost members"),
                .explanation =
                    tr("The array works without some of its disks. If more fail, data are "
                       "lost."),
                .nextStep = tr("Replace the disk that failed and add it to the array with mdadm."),
                .reading = {QStringLiteral("Documentation/admin-guide/md.rst")}};
    }

    void look(const CheckedEntry &entry, const Report &report) const override
    {
        if (const auto missing = entry.number(u"md/degraded"); missing && *missing > 0)
            report(
                {*missing == 1 ? tr("1 disk is missing") : tr("%1 disks are missing").arg(*missing),
                 {QStringLiteral("md/degraded")}});
    }
};
} // namespace

std::unique_ptr<const Check> makeRaidDegraded()
{
    return std::make_unique<RaidDegraded>();
}
