// SPDX-License-Identifier: Apache-2.0
#include "checks/Check.h"

namespace {
class CpuVulnerable : public Check
{
    Q_DECLARE_TR_FUNCTIONS(CpuVulnerable)
public:
    CheckDescription description() const override
    {
        return {.id = QStringLiteral("cpu-vulnerable"),
                .severity = Severity::Note,
                .subsystems = {QStringLiteral("DxDevice"), QStringLiteral("DxContainer")},
                .title = tr("Processor has a known weakness without a remedy"),
                .explanation =
                    tr("The kernel knows of an attack on this kind of processor, and has "
                       "no remedy against it in use. It matters most where programs or "
                       "guests run that are not trusted."),
                .nextStep = tr("Update the firmware and the kernel. Look for mitigations=off on "
                               "the command line of the kernel."),
                .reading = {QStringLiteral("Documentation/admin-guide/hw-vuln/index.rst"),
                            QStringLiteral("Documentation/ABI/testing/sysfs-devices-system-cpu")}};
    }

    void look(const CheckedEntry &entry, const Report &report) const override
    {
        for (const auto &member : entry.value(u"vulnerabilities").members()) {
            const QString state = member.value.toString();
            if (state.startsWith(QLatin1String("Vulnerable")))
                report({tr("%1: %2").arg(member.key.toOwner(), state.trimmed()),
                        {QStringLiteral("vulnerabilities/") + member.key.toOwner()}});
        }
    }
};
} // namespace

std::unique_ptr<const Check> makeCpuVulnerable()
{
    return std::make_unique<CpuVulnerable>();
}
