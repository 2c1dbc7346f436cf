// SPDX-License-Identifier: Apache-2.0
#include "checks/Check.h"

namespace {
class BlockReadOnly : public Check
{
    Q_DECLARE_TR_FUNCTIONS(BlockReadOnly)
public:
    CheckDescription description() const override
    {
        return {.id = QStringLiteral("block-read-only"),
                .severity = Severity::Note,
                .subsystems = {QStringLiteral("block")},
                .title = tr("Disk can only be read"),
                .explanation =
                    tr("The kernel writes nothing to this disk. A switch on a card or "
                       "stick may forbid it; a disk may have failed in a way that it can "
                       "still be read."),
                .nextStep = tr("If it should be writable, look for a switch, then read the "
                               "messages of the kernel and the health data of the disk."),
                .reading = {QStringLiteral("Documentation/ABI/stable/sysfs-block")}};
    }

    void look(const CheckedEntry &entry, const Report &report) const override
    {
        const QString name = entry.kernelName();
        const bool isDisk =
            name.startsWith(QLatin1String("sd")) || name.startsWith(QLatin1String("nvme"));
        if (isDisk && entry.number(u"ro") == 1 && entry.number(u"size").value_or(0) > 0 &&
            !entry.has(u"partition"))
            report({QString(), {QStringLiteral("ro")}});
    }
};
} // namespace

std::unique_ptr<const Check> makeBlockReadOnly()
{
    return std::make_unique<BlockReadOnly>();
}
