// SPDX-License-Identifier: Apache-2.0
#include "checks/Check.h"

namespace {
class ProbeDeferred : public Check
{
    Q_DECLARE_TR_FUNCTIONS(ProbeDeferred)
public:
    CheckDescription description() const override
    {
        return {.id = QStringLiteral("probe-deferred"),
                .severity = Severity::Warning,
                .subsystems = {},
                .key = QStringLiteral("waiting_for_supplier"),
                .title = tr("Device waits for another one"),
                .explanation = tr("The driver cannot start, because a device that it needs is not "
                                  "ready."),
                .nextStep = tr("Look for a driver that is missing for the device that is waited "
                               "for."),
                .reading = {QStringLiteral(
                                "Documentation/ABI/testing/sysfs-devices-waiting_for_supplier"),
                            QStringLiteral("Documentation/ABI/testing/sysfs-devices-supplier")},
                .looksAround = true};
    }

    void look(const CheckedEntry &entry, const Report &report) const override
    {
        if (entry.number(u"waiting_for_supplier") != 1)
            return;
        QStringList waitedFor;
        QStringList properties{QStringLiteral("waiting_for_supplier")};
        for (const auto &member : entry.table().members()) {
            const QString key = member.key.toOwner();
            if (!key.startsWith(QLatin1String("supplier:")))
                continue;
            const CheckedEntry *const link = entry.linkTarget(key);
            const CheckedEntry *const supplier = link ? link->linkTarget(u"supplier") : nullptr;
            if (supplier && supplier->driver().isEmpty()) {
                waitedFor.append(supplier->kernelName());
                properties.append(key);
            }
        }
        report({waitedFor.join(QLatin1String(", ")), properties});
    }
};
} // namespace

std::unique_ptr<const Check> makeProbeDeferred()
{
    return std::make_unique<ProbeDeferred>();
}
