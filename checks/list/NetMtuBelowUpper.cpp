// SPDX-License-Identifier: Apache-2.0
#include "checks/Check.h"

namespace {
class NetMtuBelowUpper : public Check
{
    Q_DECLARE_TR_FUNCTIONS(NetMtuBelowUpper)
public:
    CheckDescription description() const override
    {
        return {.id = QStringLiteral("net-mtu-below-upper"),
                .severity = Severity::Warning,
                .subsystems = {QStringLiteral("net")},
                .title = tr("Network interface takes smaller packets than the one on top of it"),
                .explanation =
                    tr("The interface that stands on this one may send packets that are "
                       "larger than this one takes. They are lost, and connections hang."),
                .nextStep = tr("Give both the same MTU."),
                .reading = {QStringLiteral("Documentation/ABI/testing/sysfs-class-net")},
                .looksAround = true};
    }

    void look(const CheckedEntry &entry, const Report &report) const override
    {
        const auto own = entry.number(u"mtu");
        for (const auto &member : entry.table().members()) {
            const QStringView key(member.key.data(), member.key.size());
            if (!own || !key.startsWith(QLatin1String("upper_")))
                continue;
            const CheckedEntry *const upper = entry.linkTarget(key);
            const auto above = upper ? upper->number(u"mtu") : std::nullopt;
            if (above && *above > *own)
                report({tr("%1, below the %2 of %3").arg(*own).arg(*above).arg(upper->kernelName()),
                        {QStringLiteral("mtu"), key.toString()}});
        }
    }
};
} // namespace

std::unique_ptr<const Check> makeNetMtuBelowUpper()
{
    return std::make_unique<NetMtuBelowUpper>();
}
