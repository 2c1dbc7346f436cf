// SPDX-License-Identifier: Apache-2.0
#include "checks/Check.h"

namespace {
class AttributeUnreadable : public Check
{
    Q_DECLARE_TR_FUNCTIONS(AttributeUnreadable)
public:
    CheckDescription description() const override
    {
        // Elsewhere such errors are how drivers say that they have no value.
        return {.id = QStringLiteral("attribute-unreadable"),
                .severity = Severity::Note,
                .subsystems = {QStringLiteral("watchdog"), QStringLiteral("thermal"),
                               QStringLiteral("hwmon"), QStringLiteral("rtc"),
                               QStringLiteral("nvmem")},
                .title = tr("Value of a device could not be read"),
                .explanation = tr("The driver asked the device for the value, and the device "
                                  "answered with an error or not at all."),
                .nextStep = tr("Try again. If it stays so, read the messages of the kernel; the "
                               "part, its firmware or its connection may be faulty."),
                .reading = {QStringLiteral("Documentation/watchdog/watchdog-api.rst"),
                            QStringLiteral("Documentation/ABI/testing/sysfs-class-thermal")}};
    }

    void look(const CheckedEntry &entry, const Report &report) const override
    {
        static const QStringList faults{
            QStringLiteral("Input/output error"), QStringLiteral("Remote I/O error"),
            QStringLiteral("Connection timed out"), QStringLiteral("Protocol error"),
            QStringLiteral("No such device or address")};
        for (const auto &member : entry.value(u"DxUnreadAttributes").members()) {
            const QString reason = member.value.toString();
            if (faults.contains(reason))
                report({QStringLiteral("%1: %2").arg(member.key.toOwner(), reason),
                        {QStringLiteral("DxUnreadAttributes")}});
        }
    }
};
} // namespace

std::unique_ptr<const Check> makeAttributeUnreadable()
{
    return std::make_unique<AttributeUnreadable>();
}
