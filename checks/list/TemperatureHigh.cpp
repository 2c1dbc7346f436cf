// SPDX-License-Identifier: Apache-2.0
#include "checks/Check.h"

namespace {
constexpr int maxTrips = 12;

class TemperatureHigh : public Check
{
    Q_DECLARE_TR_FUNCTIONS(TemperatureHigh)
public:
    CheckDescription description() const override
    {
        return {.id = QStringLiteral("temperature-high"),
                .severity = Severity::Warning,
                .subsystems = {QStringLiteral("thermal")},
                .title = tr("Too hot"),
                .explanation = tr("The temperature is above a limit at which the machine protects "
                                  "itself or turns off."),
                .nextStep = tr("Clean fans and filters, and see that air can pass."),
                .reading = {QStringLiteral("Documentation/driver-api/thermal/sysfs-api.rst")},
                .needsMeasuring = true};
    }

    void look(const CheckedEntry &entry, const Report &report) const override
    {
        const auto now = entry.number(u"temp");
        for (int trip = 0; now && trip < maxTrips; ++trip) {
            const QString prefix = QStringLiteral("trip_point_%1_").arg(trip);
            const QString type = entry.text(prefix + QLatin1String("type"));
            const auto limit = entry.number(prefix + QLatin1String("temp"));
            const bool isDangerous =
                type == QLatin1String("hot") || type == QLatin1String("critical");
            if (isDangerous && limit && *limit > 0 && *now >= *limit)
                report({tr("%1 °C, limit %2 °C").arg(*now / 1000).arg(*limit / 1000),
                        {QStringLiteral("temp"), prefix + QLatin1String("temp")},
                        Severity::Error});
        }
    }
};
} // namespace

std::unique_ptr<const Check> makeTemperatureHigh()
{
    return std::make_unique<TemperatureHigh>();
}
