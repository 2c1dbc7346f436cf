// SPDX-License-Identifier: Apache-2.0
#include "checks/Check.h"

namespace {
class PowerSupplyHealth : public Check
{
    Q_DECLARE_TR_FUNCTIONS(PowerSupplyHealth)
public:
    CheckDescription description() const override
    {
        return {.id = QStringLiteral("power-supply-health"),
                .severity = Severity::Warning,
                .subsystems = {QStringLiteral("power_supply")},
                .title = tr("Battery or power supply reports a fault"),
                .explanation = tr("The device says that its state of health is not good."),
                .nextStep = tr("Follow what the word says: let it cool or warm up, and replace "
                               "what is dead."),
                .reading = {QStringLiteral("Documentation/ABI/testing/sysfs-class-power")},
                .needsMeasuring = true};
    }

    void look(const CheckedEntry &entry, const Report &report) const override
    {
        static const QStringList faults{QStringLiteral("Overheat"),
                                        QStringLiteral("Dead"),
                                        QStringLiteral("Over voltage"),
                                        QStringLiteral("Unspecified failure"),
                                        QStringLiteral("Cold"),
                                        QStringLiteral("Watchdog timer expire"),
                                        QStringLiteral("Safety timer expire"),
                                        QStringLiteral("Over current"),
                                        QStringLiteral("Calibration required")};
        const QString health = entry.text(u"health");
        if (faults.contains(health))
            report({health, {QStringLiteral("health")}});
    }
};
} // namespace

std::unique_ptr<const Check> makePowerSupplyHealth()
{
    return std::make_unique<PowerSupplyHealth>();
}
