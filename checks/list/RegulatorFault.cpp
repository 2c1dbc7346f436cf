// SPDX-License-Identifier: Apache-2.0
#include "checks/Check.h"

namespace {
class RegulatorFault : public Check
{
    Q_DECLARE_TR_FUNCTIONS(RegulatorFault)
public:
    CheckDescription description() const override
    {
        return {.id = QStringLiteral("regulator-fault"),
                .severity = Severity::Error,
                .subsystems = {QStringLiteral("regulator")},
                .title = tr("Voltage regulator reports a fault"),
                .explanation =
                    tr("The regulator gives the wrong voltage, too much current or is too "
                       "hot."),
                .nextStep = tr("Read the messages of the kernel; the board or what it supplies may "
                               "be damaged."),
                .reading = {QStringLiteral("Documentation/ABI/testing/sysfs-class-regulator")}};
    }

    void look(const CheckedEntry &entry, const Report &report) const override
    {
        for (const char16_t *const fault :
             {u"under_voltage", u"over_current", u"regulation_out", u"fail", u"over_temp"}) {
            if (entry.number(fault) == 1)
                report({QString::fromUtf16(fault), {QString::fromUtf16(fault)}});
        }
    }
};
} // namespace

std::unique_ptr<const Check> makeRegulatorFault()
{
    return std::make_unique<RegulatorFault>();
}
