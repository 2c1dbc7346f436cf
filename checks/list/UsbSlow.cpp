// SPDX-License-Identifier: Apache-2.0
#include "checks/Check.h"

namespace {
class UsbSlow : public Check
{
    Q_DECLARE_TR_FUNCTIONS(UsbSlow)
public:
    CheckDescription description() const override
    {
        return {
            .id = QStringLiteral("usb-slow"),
            .severity = Severity::Warning,
            .subsystems = {QStringLiteral("usb")},
            .title = tr("USB 3 device runs at the speed of USB 2"),
            .explanation = tr("The device describes itself as one of USB 3, but is connected at "
                              "480 Mbit/s or less. The port, a hub on the way or the cable may be "
                              "of USB 2, or a contact is bad."),
            .nextStep = tr("Plug it into a port of USB 3 without a hub, and try another cable."),
            .reading = {QStringLiteral("Documentation/ABI/testing/sysfs-bus-usb")}};
    }

    void look(const CheckedEntry &entry, const Report &report) const override
    {
        const auto version = entry.leadingNumber(u"version");
        const auto speed = entry.leadingNumber(u"speed");
        constexpr double third = 3.0;
        constexpr double highSpeed = 480; // Mbit/s
        if (version && speed && *version >= third && *speed > 0 && *speed <= highSpeed)
            report({tr("%1 Mbit/s").arg(*speed),
                    {QStringLiteral("speed"), QStringLiteral("version")}});
    }
};
} // namespace

std::unique_ptr<const Check> makeUsbSlow()
{
    return std::make_unique<UsbSlow>();
}
