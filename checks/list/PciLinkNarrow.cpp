// SPDX-License-Identifier: Apache-2.0
#include "checks/Check.h"

namespace {
class PciLinkNarrow : public Check
{
    Q_DECLARE_TR_FUNCTIONS(PciLinkNarrow)
public:
    CheckDescription description() const override
    {
        return {.id = QStringLiteral("pci-link-narrow"),
                .severity = Severity::Warning,
                .subsystems = {QStringLiteral("pci")},
                .title = tr("PCI Express link is narrower than it could be"),
                .explanation = tr("The link between this device and the bridge above it uses fewer "
                                  "lanes than both ends have. A slot may be wired for fewer lanes "
                                  "than its connector has; a worn or dirty contact has the same "
                                  "effect."),
                .nextStep = tr("Look up how many lanes the slot has, seat the card again, and try "
                               "another slot."),
                .reading = {QStringLiteral("Documentation/ABI/testing/sysfs-bus-pci")},
                .looksAround = true};
    }

    void look(const CheckedEntry &entry, const Report &report) const override
    {
        const CheckedEntry *const bridge = entry.parent();
        if (!bridge || bridge->subsystem() != QLatin1String("pci") ||
            entry.text(u"removable") == QLatin1String("removable"))
            return;
        const auto now = entry.number(u"current_link_width");
        const auto own = entry.number(u"max_link_width");
        const auto above = bridge->number(u"max_link_width");
        constexpr qint64 mostLanes = 32; // more stands for an unknown width
        if (now && own && above && *now > 0 && *own <= mostLanes && *above <= mostLanes &&
            *now < std::min(*own, *above))
            report({tr("%1 of %2 lanes").arg(*now).arg(std::min(*own, *above)),
                    {QStringLiteral("current_link_width"), QStringLiteral("max_link_width")}});
    }
};
} // namespace

std::unique_ptr<const Check> makePciLinkNarrow()
{
    return std::make_unique<PciLinkNarrow>();
}
