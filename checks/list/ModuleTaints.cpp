// SPDX-License-Identifier: Apache-2.0
#include "checks/Check.h"

namespace {
class ModuleTaints : public Check
{
    Q_DECLARE_TR_FUNCTIONS(ModuleTaints)
public:
    CheckDescription description() const override
    {
        return {.id = QStringLiteral("module-taints"),
                .severity = Severity::Note,
                .subsystems = {QStringLiteral("DxModule")},
                .title = tr("A module is not from the kernel itself"),
                .explanation =
                    tr("The module marks the kernel as tainted, so that its developers may "
                       "not look at faults. P: not open source, O: built outside the "
                       "kernel, F: forced in, C: staging, E: not signed."),
                .nextStep = tr("Nothing, if you know why it is there. To report a fault of the "
                               "kernel, try without it."),
                .reading = {QStringLiteral("Documentation/admin-guide/tainted-kernels.rst")}};
    }

    void look(const CheckedEntry &entry, const Report &report) const override
    {
        if (const QString taint = entry.text(u"taint"); !taint.isEmpty())
            report({taint, {QStringLiteral("taint")}});
    }
};
} // namespace

std::unique_ptr<const Check> makeModuleTaints()
{
    return std::make_unique<ModuleTaints>();
}
