// SPDX-License-Identifier: Apache-2.0
#include "checks/Check.h"

namespace {
class FanStopped : public Check
{
    Q_DECLARE_TR_FUNCTIONS(FanStopped)
public:
    CheckDescription description() const override
    {
        return {.id = QStringLiteral("fan-stopped"),
                .severity = Severity::Warning,
                .subsystems = {QStringLiteral("hwmon")},
                .title = tr("A fan stands still that should turn"),
                .explanation = tr("The fan has a target speed above zero, but does not turn."),
                .nextStep = tr("See whether something blocks it, then replace it."),
                .reading = {QStringLiteral("Documentation/hwmon/sysfs-interface.rst")},
                .needsMeasuring = true};
    }

    void look(const CheckedEntry &entry, const Report &report) const override
    {
        for (const auto &member : entry.table().members()) {
            const QString key = member.key.toOwner();
            const QLatin1String ending("_target");
            if (!key.startsWith(QLatin1String("fan")) || !key.endsWith(ending))
                continue;
            const QString input = key.chopped(ending.size()) + QLatin1String("_input");
            if (entry.number(key).value_or(0) > 0 && entry.number(input) == 0)
                report({tr("%1 is 0, %2 is %3").arg(input, key).arg(*entry.number(key)),
                        {input, key}});
        }
    }
};
} // namespace

std::unique_ptr<const Check> makeFanStopped()
{
    return std::make_unique<FanStopped>();
}
