// SPDX-License-Identifier: Apache-2.0
#include "checks/Check.h"

namespace {
// Interfaces drop packets that nothing on the machine wants, so only what they lose counts.
const QStringList &counters()
{
    static const QStringList counters{
        QStringLiteral("statistics/rx_errors"), QStringLiteral("statistics/rx_missed_errors"),
        QStringLiteral("statistics/tx_errors"), QStringLiteral("statistics/tx_dropped")};
    return counters;
}

class NetErrorsRising : public Check
{
    Q_DECLARE_TR_FUNCTIONS(NetErrorsRising)
public:
    CheckDescription description() const override
    {
        return {.id = QStringLiteral("net-errors-rising"),
                .severity = Severity::Warning,
                .subsystems = {QStringLiteral("net")},
                .title = tr("Network interface is losing packets"),
                .explanation =
                    tr("Its counters of errors or lost packets rose within a second. A bad cable "
                       "or port, a wrong duplex setting or too much traffic causes this."),
                .nextStep = tr("Plot the counter, then try another cable and port."),
                .reading = {QStringLiteral("Documentation/networking/statistics.rst"),
                            QStringLiteral("Documentation/ABI/testing/sysfs-class-net-statistics")},
                .needsMeasuring = true,
                .counters = counters()};
    }

    void look(const CheckedEntry &entry, const Report &report) const override
    {
        for (const QString &counter : counters()) {
            if (const auto rise = entry.rise(counter); rise && *rise > 0)
                report({tr("%1: %2 more").arg(counter.section(u'/', 1)).arg(*rise), {counter}});
        }
    }
};
} // namespace

std::unique_ptr<const Check> makeNetErrorsRising()
{
    return std::make_unique<NetErrorsRising>();
}
