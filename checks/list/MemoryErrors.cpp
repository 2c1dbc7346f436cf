// SPDX-License-Identifier: Apache-2.0
#include "checks/Check.h"

namespace {
class MemoryErrors : public Check
{
    Q_DECLARE_TR_FUNCTIONS(MemoryErrors)
public:
    CheckDescription description() const override
    {
        return {.id = QStringLiteral("memory-errors"),
                .severity = Severity::Warning,
                .subsystems = {QStringLiteral("edac")},
                .title = tr("Memory errors were counted"),
                .explanation = tr("The memory controller found errors since the machine started. "
                                  "Corrected ones lost nothing; uncorrected ones did."),
                .nextStep = tr("Find the memory module by its label and replace it."),
                .reading = {QStringLiteral("Documentation/admin-guide/ras.rst")}};
    }

    void look(const CheckedEntry &entry, const Report &report) const override
    {
        if (const auto count = entry.number(u"ue_count"); count && *count > 0)
            report({tr("%1 not corrected").arg(*count),
                    {QStringLiteral("ue_count")},
                    Severity::Error});
        if (const auto count = entry.number(u"ce_count"); count && *count > 0)
            report({tr("%1 corrected").arg(*count), {QStringLiteral("ce_count")}});
    }
};
} // namespace

std::unique_ptr<const Check> makeMemoryErrors()
{
    return std::make_unique<MemoryErrors>();
}
