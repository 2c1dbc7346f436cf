// SPDX-License-Identifier: Apache-2.0
#include "checks/Check.h"

namespace {
class ClockSource : public Check
{
    Q_DECLARE_TR_FUNCTIONS(ClockSource)
public:
    CheckDescription description() const override
    {
        return {.id = QStringLiteral("clock-source"),
                .severity = Severity::Note,
                .subsystems = {QStringLiteral("clocksource")},
                .title = tr("The kernel does not use its best clock"),
                .explanation =
                    tr("The first clock of those available is the best one. Another takes "
                       "more time to read, which slows programs that ask for the time "
                       "often."),
                .nextStep = tr("Look for clocksource= or tsc=unstable on the command line and in "
                               "the messages of the kernel."),
                .reading = {QStringLiteral("Documentation/timers/timekeeping.rst"),
                            QStringLiteral("Documentation/admin-guide/kernel-parameters.txt")}};
    }

    void look(const CheckedEntry &entry, const Report &report) const override
    {
        const QString best =
            entry.text(u"available_clocksource").section(u' ', 0, 0, QString::SectionSkipEmpty);
        const QString current = entry.text(u"current_clocksource");
        if (!best.isEmpty() && !current.isEmpty() && current != best)
            report(
                {tr("%1 instead of %2").arg(current, best),
                 {QStringLiteral("current_clocksource"), QStringLiteral("available_clocksource")}});
    }
};
} // namespace

std::unique_ptr<const Check> makeClockSource()
{
    return std::make_unique<ClockSource>();
}
