// SPDX-License-Identifier: Apache-2.0
#include "checks/Check.h"

namespace {
class NodeWithoutMemory : public Check
{
    Q_DECLARE_TR_FUNCTIONS(NodeWithoutMemory)
public:
    CheckDescription description() const override
    {
        return {.id = QStringLiteral("node-without-memory"),
                .severity = Severity::Note,
                .subsystems = {QStringLiteral("node")},
                .title = tr("Processors have no memory of their own"),
                .explanation =
                    tr("This node has processors, but no memory: they use that of others, "
                       "which is slower."),
                .nextStep = tr("Spread the memory modules over all processors, as the manual of "
                               "the board says."),
                .reading = {QStringLiteral("Documentation/ABI/stable/sysfs-devices-node")}};
    }

    void look(const CheckedEntry &entry, const Report &report) const override
    {
        for (const auto &member : entry.value(u"meminfo").members()) {
            const QString key = member.key.toOwner();
            if (!key.endsWith(QLatin1String("MemTotal")) || entry.text(u"cpulist").isEmpty())
                continue;
            const QString amount = member.value.toString();
            if (amount.section(u' ', 0, 0) == QLatin1String("0") ||
                (member.value.type() == RegistryValue::Type::Number &&
                 member.value.numberBits() == 0))
                report({QString(), {QStringLiteral("meminfo/") + key}});
        }
    }
};
} // namespace

std::unique_ptr<const Check> makeNodeWithoutMemory()
{
    return std::make_unique<NodeWithoutMemory>();
}
