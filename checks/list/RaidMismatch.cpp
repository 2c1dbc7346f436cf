// SPDX-License-Identifier: Apache-2.0
#include "checks/Check.h"

namespace {
class RaidMismatch : public Check
{
    Q_DECLARE_TR_FUNCTIONS(RaidMismatch)
public:
    CheckDescription description() const override
    {
        return {.id = QStringLiteral("raid-mismatch"),
                .severity = Severity::Note,
                .subsystems = {QStringLiteral("block")},
                .title = tr("Copies in a RAID array differ"),
                .explanation =
                    tr("The last check of the array found blocks whose copies or checksums "
                       "do not agree. With RAID 1 and 10 this can be harmless, such as for "
                       "swap space; with RAID 5 and 6 it means damage."),
                .nextStep = tr("Run a check of the array again, and a repair if the number stays."),
                .reading = {QStringLiteral("Documentation/admin-guide/md.rst")}};
    }

    void look(const CheckedEntry &entry, const Report &report) const override
    {
        const auto count = entry.number(u"md/mismatch_cnt");
        const QString level = entry.text(u"md/level");
        const bool hasParity = level == QLatin1String("raid4") || level == QLatin1String("raid5") ||
                               level == QLatin1String("raid6");
        if (count && *count > 0)
            report({tr("%1 sectors, %2").arg(*count).arg(level),
                    {QStringLiteral("md/mismatch_cnt")},
                    hasParity ? std::optional(Severity::Warning) : std::nullopt});
    }
};
} // namespace

std::unique_ptr<const Check> makeRaidMismatch()
{
    return std::make_unique<RaidMismatch>();
}
