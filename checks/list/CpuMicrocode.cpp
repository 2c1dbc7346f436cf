// SPDX-License-Identifier: Apache-2.0
#include "checks/Check.h"

namespace {
class CpuMicrocode : public Check
{
    Q_DECLARE_TR_FUNCTIONS(CpuMicrocode)
public:
    CheckDescription description() const override
    {
        return {.id = QStringLiteral("cpu-microcode-differs"),
                .severity = Severity::Warning,
                .subsystems = {QStringLiteral("cpu")},
                .title = tr("Processors have different microcode"),
                .explanation =
                    tr("The processors of a machine should all have the same microcode, or "
                       "they may act differently."),
                .nextStep = tr("Update the firmware and the package with the microcode, then "
                               "restart."),
                .reading = {QStringLiteral("Documentation/x86/microcode.rst")},
                .looksAround = true};
    }

    void look(const CheckedEntry &entry, const Report &report) const override
    {
        // Each is compared with the first of the same kind.
        for (const CheckedEntry *const other :
             entry.registry().ofSubsystem(QStringLiteral("cpu"))) {
            const auto its = other->number(u"microcode/version");
            const auto own = entry.number(u"microcode/version");
            if (!its || !own ||
                other->number(u"microcode/processor_flags") !=
                    entry.number(u"microcode/processor_flags"))
                continue;
            if (*its != *own)
                report({tr("0x%1, %2 has 0x%3")
                            .arg(*own, 0, 16)
                            .arg(other->kernelName())
                            .arg(*its, 0, 16),
                        {QStringLiteral("microcode/version")}});
            return;
        }
    }
};
} // namespace

std::unique_ptr<const Check> makeCpuMicrocode()
{
    return std::make_unique<CpuMicrocode>();
}
