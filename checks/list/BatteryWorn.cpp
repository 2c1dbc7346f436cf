// SPDX-License-Identifier: Apache-2.0
#include "checks/Check.h"

namespace {
class BatteryWorn : public Check
{
    Q_DECLARE_TR_FUNCTIONS(BatteryWorn)
public:
    CheckDescription description() const override
    {
        return {.id = QStringLiteral("battery-worn"),
                .severity = Severity::Note,
                .subsystems = {QStringLiteral("power_supply")},
                .title = tr("Battery has lost much of its capacity"),
                .explanation =
                    tr("When full, the battery holds less than 60 percent of what it was "
                       "made for."),
                .nextStep = tr("Replace it when the time it lasts is too short for you."),
                .reading = {QStringLiteral("Documentation/ABI/testing/sysfs-class-power")},
                .needsMeasuring = true};
    }

    void look(const CheckedEntry &entry, const Report &report) const override
    {
        for (const auto &[full, design] : {std::pair(u"energy_full", u"energy_full_design"),
                                           std::pair(u"charge_full", u"charge_full_design")}) {
            constexpr double worn = 0.6;
            const auto now = entry.number(full);
            const auto made = entry.number(design);
            if (!now || !made || *now <= 0 || *made <= 0)
                continue;
            const double share = static_cast<double>(*now) / static_cast<double>(*made);
            if (share < worn)
                report({tr("%1 %").arg(qRound(share * 100)),
                        {QString::fromUtf16(full), QString::fromUtf16(design)}});
        }
    }
};
} // namespace

std::unique_ptr<const Check> makeBatteryWorn()
{
    return std::make_unique<BatteryWorn>();
}
