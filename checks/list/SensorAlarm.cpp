// SPDX-License-Identifier: Apache-2.0
#include "checks/Check.h"

namespace {
class SensorAlarm : public Check
{
    Q_DECLARE_TR_FUNCTIONS(SensorAlarm)
public:
    CheckDescription description() const override
    {
        return {.id = QStringLiteral("sensor-alarm"),
                .severity = Severity::Warning,
                .subsystems = {QStringLiteral("hwmon")},
                .title = tr("A sensor reports a fault"),
                .explanation =
                    tr("The chip that watches temperatures, fans and voltages says that a "
                       "value is critical or that a sensor or fan has failed."),
                .nextStep = tr("Compare the value with its limits; clean or replace the fan."),
                .reading = {QStringLiteral("Documentation/hwmon/sysfs-interface.rst")},
                .needsMeasuring = true};
    }

    void look(const CheckedEntry &entry, const Report &report) const override
    {
        for (const auto &member : entry.table().members()) {
            const QString key = member.key.toOwner();
            const bool isAlarm = key.endsWith(QLatin1String("_fault")) ||
                                 key.endsWith(QLatin1String("_crit_alarm")) ||
                                 key.endsWith(QLatin1String("_emergency_alarm"));
            if (isAlarm && entry.number(key) == 1)
                report({key, {key}});
        }
    }
};
} // namespace

std::unique_ptr<const Check> makeSensorAlarm()
{
    return std::make_unique<SensorAlarm>();
}
