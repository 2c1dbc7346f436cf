// SPDX-License-Identifier: Apache-2.0
#include "checks/Check.h"

namespace {
class NetNoCarrier : public Check
{
    Q_DECLARE_TR_FUNCTIONS(NetNoCarrier)
public:
    CheckDescription description() const override
    {
        return {.id = QStringLiteral("net-no-carrier"),
                .severity = Severity::Note,
                .subsystems = {QStringLiteral("net")},
                .title = tr("Network interface is up and has no carrier"),
                .explanation =
                    tr("The interface is turned on, but nothing answers at the other end "
                       "of the cable."),
                .nextStep = tr("Plug the cable in, check the other end, and turn on the peer of a "
                               "virtual link."),
                .reading = {QStringLiteral("Documentation/ABI/testing/sysfs-class-net")}};
    }

    void look(const CheckedEntry &entry, const Report &report) const override
    {
        constexpr qint64 isUp = 1;
        // These have a carrier only while something else uses them.
        const bool dependsOnUse = entry.has(u"bridge") || entry.has(u"bonding") ||
                                  entry.has(u"tun_flags") || entry.has(u"wireless") ||
                                  entry.has(u"phy80211");
        if (!dependsOnUse && entry.number(u"flags").value_or(0) & isUp &&
            entry.number(u"carrier") == 0)
            report(
                {entry.text(u"operstate"), {QStringLiteral("carrier"), QStringLiteral("flags")}});
    }
};
} // namespace

std::unique_ptr<const Check> makeNetNoCarrier()
{
    return std::make_unique<NetNoCarrier>();
}
