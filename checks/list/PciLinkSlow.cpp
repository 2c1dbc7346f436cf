// SPDX-License-Identifier: Apache-2.0
#include "checks/Check.h"

namespace {
// Whether a lower speed is how the device saves power, or no speed at all.
bool isExempt(const CheckedEntry &entry)
{
    constexpr qint64 display = 0x03;
    constexpr int toBaseClass = 16;
    if (entry.number(u"class").value_or(0) >> toBaseClass == display ||
        entry.text(u"power/runtime_status") == QLatin1String("suspended") ||
        entry.text(u"power_state").startsWith(QLatin1String("D3")))
        return true;
    for (const CheckedEntry *at = &entry; at; at = at->parent()) {
        if (at->text(u"removable") == QLatin1String("removable"))
            return true;
        for (const CheckedEntry *const child : at->children()) {
            if (at != &entry && child->subsystem() == QLatin1String("pci") &&
                child->kernelName().section(u'.', 0, 0) == entry.kernelName().section(u'.', 0, 0) &&
                child->number(u"class").value_or(0) >> toBaseClass == display)
                return true; // another function of a display controller
        }
    }
    return false;
}

class PciLinkSlow : public Check
{
    Q_DECLARE_TR_FUNCTIONS(PciLinkSlow)
public:
    CheckDescription description() const override
    {
        return {.id = QStringLiteral("pci-link-slow"),
                .severity = Severity::Warning,
                .subsystems = {QStringLiteral("pci")},
                .title = tr("PCI Express link is slower than it could be"),
                .explanation =
                    tr("The link between this device and the bridge above it runs at a "
                       "lower speed than both ends support. A worn or dirty contact, a "
                       "riser card, a cable or a setting of the firmware can cause this."),
                .nextStep = tr("Seat the card again, try another slot, and look for a limit of the "
                               "link speed in the firmware settings."),
                .reading = {QStringLiteral("Documentation/ABI/testing/sysfs-bus-pci")},
                .looksAround = true};
    }

    void look(const CheckedEntry &entry, const Report &report) const override
    {
        // A display controller lowers its speed when it has little to do, and a tunnelled link
        // always gives the lowest.
        const CheckedEntry *const bridge = entry.parent();
        if (!bridge || bridge->subsystem() != QLatin1String("pci") || isExempt(entry))
            return;
        const auto now = entry.leadingNumber(u"current_link_speed");
        const auto own = entry.leadingNumber(u"max_link_speed");
        const auto above = bridge->leadingNumber(u"max_link_speed");
        if (now && own && above && *now > 0 && *now < std::min(*own, *above))
            report({tr("%1 instead of %2")
                        .arg(entry.text(u"current_link_speed"),
                             *own < *above ? entry.text(u"max_link_speed")
                                           : bridge->text(u"max_link_speed")),
                    {QStringLiteral("current_link_speed"), QStringLiteral("max_link_speed")}});
    }
};
} // namespace

std::unique_ptr<const Check> makePciLinkSlow()
{
    return std::make_unique<PciLinkSlow>();
}
