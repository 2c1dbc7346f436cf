// SPDX-License-Identifier: Apache-2.0
#include "checks/Check.h"

namespace {
class NoAnswer : public Check
{
    Q_DECLARE_TR_FUNCTIONS(NoAnswer)
public:
    CheckDescription description() const override
    {
        return {.id = QStringLiteral("no-answer"),
                .severity = Severity::Warning,
                .subsystems = {},
                .key = QStringLiteral("DxUnreadAttributes"),
                .title = tr("Device did not answer"),
                .explanation =
                    tr("Reading an attribute of the device took so long that it was given "
                       "up. The device or its driver hangs."),
                .nextStep = tr("Read the messages of the kernel, then try again with Registry, "
                               "Update Selected Object."),
                .reading = {}};
    }

    void look(const CheckedEntry &entry, const Report &report) const override
    {
        for (const auto &member : entry.value(u"DxUnreadAttributes").members()) {
            if (member.value.toString().contains(QLatin1String("did not answer")))
                report({member.key.toOwner(), {QStringLiteral("DxUnreadAttributes")}});
        }
    }
};
} // namespace

std::unique_ptr<const Check> makeNoAnswer()
{
    return std::make_unique<NoAnswer>();
}
