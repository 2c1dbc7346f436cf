// SPDX-License-Identifier: Apache-2.0
#include "checks/Check.h"

namespace {
class BondMemberDown : public Check
{
    Q_DECLARE_TR_FUNCTIONS(BondMemberDown)
public:
    CheckDescription description() const override
    {
        return {.id = QStringLiteral("bond-member-down"),
                .severity = Severity::Warning,
                .subsystems = {QStringLiteral("net")},
                .title = tr("Member of a bond is down"),
                .explanation = tr("The bond works without this interface, so that it is slower or "
                                  "would fail with the next one."),
                .nextStep = tr("Check the cable and the other end of this interface."),
                .reading = {QStringLiteral("Documentation/networking/bonding.rst")}};
    }

    void look(const CheckedEntry &entry, const Report &report) const override
    {
        if (entry.text(u"bonding_slave/mii_status") == QLatin1String("down"))
            report({tr("in %1").arg(entry.linkName(u"master")),
                    {QStringLiteral("bonding_slave/mii_status")}});
    }
};
} // namespace

std::unique_ptr<const Check> makeBondMemberDown()
{
    return std::make_unique<BondMemberDown>();
}
