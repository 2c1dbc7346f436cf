// SPDX-License-Identifier: Apache-2.0
#include "checks/Check.h"

namespace {
class NetHalfDuplex : public Check
{
    Q_DECLARE_TR_FUNCTIONS(NetHalfDuplex)
public:
    CheckDescription description() const override
    {
        return {.id = QStringLiteral("net-half-duplex"),
                .severity = Severity::Warning,
                .subsystems = {QStringLiteral("net")},
                .title = tr("Network interface sends and receives by turns"),
                .explanation =
                    tr("The link runs in half duplex. Today nearly all links run in full "
                       "duplex; half duplex follows when one end is set by hand and the "
                       "other finds out by itself."),
                .nextStep = tr("Set both ends to find out by themselves, and try another cable."),
                .reading = {QStringLiteral("Documentation/ABI/testing/sysfs-class-net")}};
    }

    void look(const CheckedEntry &entry, const Report &report) const override
    {
        if (entry.text(u"duplex") == QLatin1String("half") && entry.number(u"carrier") == 1 &&
            !entry.has(u"wireless") && !entry.has(u"phy80211"))
            report({tr("%1 Mbit/s").arg(entry.number(u"speed").value_or(0)),
                    {QStringLiteral("duplex")}});
    }
};
} // namespace

std::unique_ptr<const Check> makeNetHalfDuplex()
{
    return std::make_unique<NetHalfDuplex>();
}
