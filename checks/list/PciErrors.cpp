// SPDX-License-Identifier: Apache-2.0
#include "checks/Check.h"

namespace {
class PciErrors : public Check
{
    Q_DECLARE_TR_FUNCTIONS(PciErrors)
public:
    CheckDescription description() const override
    {
        return {.id = QStringLiteral("pci-errors"),
                .severity = Severity::Warning,
                .subsystems = {QStringLiteral("pci")},
                .title = tr("PCI Express errors were counted"),
                .explanation =
                    tr("The device reported errors of its link since the machine started. "
                       "Corrected ones cost time only; uncorrected ones lost data or "
                       "stopped the device."),
                .nextStep = tr("Read the messages of the kernel, seat the card again and try "
                               "another slot. Many corrected errors often stop when the power "
                               "management of the link (ASPM) is turned off."),
                .reading = {
                    QStringLiteral("Documentation/ABI/testing/sysfs-bus-pci-devices-aer_stats")}};
    }

    void look(const CheckedEntry &entry, const Report &report) const override
    {
        static const struct
        {
            const char *attribute;
            const char *total;
            Severity severity;
        } counters[] = {{"aer_dev_fatal", "TOTAL_ERR_FATAL", Severity::Error},
                        {"aer_dev_nonfatal", "TOTAL_ERR_NONFATAL", Severity::Warning},
                        {"aer_dev_correctable", "TOTAL_ERR_COR", Severity::Note}};
        for (const auto &[attribute, total, severity] : counters) {
            const QString path = QLatin1String(attribute) + u'/' + QLatin1String(total);
            if (const auto count = entry.number(path); count && *count > 0)
                report({tr("%1: %2").arg(path).arg(*count), {path}, severity});
        }
    }
};
} // namespace

std::unique_ptr<const Check> makePciErrors()
{
    return std::make_unique<PciErrors>();
}
