// SPDX-License-Identifier: Apache-2.0
#include "checks/Check.h"

namespace {
class ScsiErrors : public Check
{
    Q_DECLARE_TR_FUNCTIONS(ScsiErrors)
public:
    CheckDescription description() const override
    {
        return {.id = QStringLiteral("scsi-errors"),
                .severity = Severity::Warning,
                .subsystems = {QStringLiteral("scsi")},
                .title = tr("Many commands to a disk failed"),
                .explanation = tr("More than one in a hundred of the commands to the disk ended "
                                  "with an error since the machine started. A few are normal, "
                                  "since the kernel asks for what a disk may not have."),
                .nextStep = tr("Read the messages of the kernel and the health data of the disk; "
                               "check its cable and power."),
                .reading = {QStringLiteral("Documentation/ABI/testing/sysfs-block-device"),
                            QStringLiteral("Documentation/scsi/scsi_mid_low_api.rst")}};
    }

    void look(const CheckedEntry &entry, const Report &report) const override
    {
        constexpr qint64 disk = 0;          // of the type of SCSI devices
        constexpr qint64 fewErrors = 100;   // of those that come with finding out what it can
        constexpr qint64 normalShare = 100; // one of so many
        const auto errors = entry.number(u"ioerr_cnt");
        const auto done = entry.number(u"iodone_cnt");
        if (entry.number(u"type") == disk && errors && done && *errors >= fewErrors &&
            *errors > *done / normalShare)
            report({tr("%1 of %2 commands").arg(*errors).arg(*done),
                    {QStringLiteral("ioerr_cnt"), QStringLiteral("iodone_cnt")}});
    }
};
} // namespace

std::unique_ptr<const Check> makeScsiErrors()
{
    return std::make_unique<ScsiErrors>();
}
