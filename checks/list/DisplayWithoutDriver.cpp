// SPDX-License-Identifier: Apache-2.0
#include "checks/Check.h"

namespace {
class DisplayWithoutDriver : public Check
{
    Q_DECLARE_TR_FUNCTIONS(DisplayWithoutDriver)
public:
    CheckDescription description() const override
    {
        return {.id = QStringLiteral("display-without-driver"),
                .severity = Severity::Note,
                .subsystems = {QStringLiteral("pci")},
                .title = tr("Graphics hardware has no driver"),
                .explanation =
                    tr("The picture comes from a frame buffer that the firmware set up: it "
                       "is slow, has a fixed size and cannot save power."),
                .nextStep = tr("Install the driver or the firmware of the graphics hardware, and "
                               "look for nomodeset on the command line of the kernel."),
                .reading = {QStringLiteral("Documentation/ABI/testing/sysfs-bus-pci")}};
    }

    void look(const CheckedEntry &entry, const Report &report) const override
    {
        constexpr qint64 display = 0x03;
        constexpr int toBaseClass = 16;
        if (entry.number(u"class").value_or(0) >> toBaseClass == display &&
            entry.driver().isEmpty() && entry.number(u"boot_vga") == 1)
            report({entry.text(u"modalias"), {QStringLiteral("class")}});
    }
};
} // namespace

std::unique_ptr<const Check> makeDisplayWithoutDriver()
{
    return std::make_unique<DisplayWithoutDriver>();
}
