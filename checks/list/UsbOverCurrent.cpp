// SPDX-License-Identifier: Apache-2.0
#include "checks/Check.h"

namespace {
class UsbOverCurrent : public Check
{
    Q_DECLARE_TR_FUNCTIONS(UsbOverCurrent)
public:
    CheckDescription description() const override
    {
        return {.id = QStringLiteral("usb-over-current"),
                .severity = Severity::Warning,
                .subsystems = {QStringLiteral("usb"), QStringLiteral("DxDevice")},
                .title = tr("A USB port drew too much current"),
                .explanation =
                    tr("The hub cut the power of this port because a device drew more than "
                       "the port may give."),
                .nextStep = tr("Unplug what is there, look for a damaged connector or cable, and "
                               "use a hub with its own power supply."),
                .reading = {QStringLiteral("Documentation/ABI/testing/sysfs-bus-usb")}};
    }

    void look(const CheckedEntry &entry, const Report &report) const override
    {
        if (const auto count = entry.number(u"over_current_count"); count && *count > 0)
            report({*count == 1 ? tr("once") : tr("%1 times").arg(*count),
                    {QStringLiteral("over_current_count")}});
    }
};
} // namespace

std::unique_ptr<const Check> makeUsbOverCurrent()
{
    return std::make_unique<UsbOverCurrent>();
}
