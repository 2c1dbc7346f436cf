// SPDX-License-Identifier: Apache-2.0
#include "checks/Check.h"

namespace {
class RemoteProcessorCrashed : public Check
{
    Q_DECLARE_TR_FUNCTIONS(RemoteProcessorCrashed)
public:
    CheckDescription description() const override
    {
        return {.id = QStringLiteral("remote-processor-crashed"),
                .severity = Severity::Error,
                .subsystems = {QStringLiteral("remoteproc")},
                .title = tr("Another processor of the board has crashed"),
                .explanation = tr("The program on a processor that serves this machine has stopped "
                                  "with an error."),
                .nextStep = tr("Read the messages of the kernel, and start it again by writing "
                               "\"start\" to its attribute \"state\"."),
                .reading = {QStringLiteral("Documentation/ABI/testing/sysfs-class-remoteproc")}};
    }

    void look(const CheckedEntry &entry, const Report &report) const override
    {
        if (entry.text(u"state") == QLatin1String("crashed"))
            report({QString(), {QStringLiteral("state")}});
    }
};
} // namespace

std::unique_ptr<const Check> makeRemoteProcessorCrashed()
{
    return std::make_unique<RemoteProcessorCrashed>();
}
