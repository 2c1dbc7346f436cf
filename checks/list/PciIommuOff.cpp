// SPDX-License-Identifier: Apache-2.0
#include "checks/Check.h"

namespace {
class PciIommuOff : public Check
{
    Q_DECLARE_TR_FUNCTIONS(PciIommuOff)
public:
    CheckDescription description() const override
    {
        return {.id = QStringLiteral("pci-iommu-off"),
                .severity = Severity::Note,
                .subsystems = {QStringLiteral("pci")},
                .title = tr("The machine has an IOMMU that is not in use"),
                .explanation =
                    tr("An IOMMU keeps devices from reading and writing memory that is not "
                       "theirs. The machine has one, but the kernel does not use it."),
                .nextStep = tr("Turn it on in the firmware settings, and look for iommu=off on the "
                               "command line of the kernel."),
                .reading = {QStringLiteral("Documentation/admin-guide/kernel-parameters.txt")},
                .looksAround = true};
    }

    void look(const CheckedEntry &entry, const Report &report) const override
    {
        constexpr qint64 iommu = 0x080600;
        if (entry.number(u"class") == iommu &&
            entry.registry().ofSubsystem(QStringLiteral("iommu")).empty())
            report({QString(), {QStringLiteral("class")}});
    }
};
} // namespace

std::unique_ptr<const Check> makePciIommuOff()
{
    return std::make_unique<PciIommuOff>();
}
