// SPDX-License-Identifier: Apache-2.0
#include "checks/Check.h"

namespace {
class RuntimePowerError : public Check
{
    Q_DECLARE_TR_FUNCTIONS(RuntimePowerError)
public:
    CheckDescription description() const override
    {
        return {.id = QStringLiteral("runtime-power-error"),
                .severity = Severity::Warning,
                .subsystems = {},
                .key = QStringLiteral("power"),
                .title = tr("Power management of a device failed"),
                .explanation = tr("The driver could not put the device to sleep or wake it up. It "
                                  "stays as it is, and may draw more power or not work."),
                .nextStep =
                    tr("Read the messages of the kernel. Writing \"on\" to power/control of "
                       "the device keeps it awake."),
                .reading = {QStringLiteral("Documentation/power/runtime_pm.rst")}};
    }

    void look(const CheckedEntry &entry, const Report &report) const override
    {
        if (entry.text(u"power/runtime_status") == QLatin1String("error"))
            report({QString(), {QStringLiteral("power/runtime_status")}});
    }
};
} // namespace

std::unique_ptr<const Check> makeRuntimePowerError()
{
    return std::make_unique<RuntimePowerError>();
}
