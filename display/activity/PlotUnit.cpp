// SPDX-License-Identifier: Apache-2.0
#include "display/activity/PlotUnit.h"

#include <QLocale>
#include <cmath>
#include <span>

struct PlotUnit::Prefix
{
    double scale;
    const char *text;
};

namespace {
using UnitKind = ValueUnit::Kind;

constexpr int maxDecimals = 3;

// The decimals of a number with four digits.
int decimalsOf(double number)
{
    const double size = std::abs(number);
    return size >= 1000 ? 0 : size >= 100 ? 1 : size >= 10 ? 2 : maxDecimals;
}

// The decimals that tell multiples of a step apart.
int decimalsFor(double step)
{
    int decimals = 0;
    while (decimals < maxDecimals && std::abs(step - std::round(step)) > 1e-6 * step) {
        step *= 10;
        ++decimals;
    }
    return decimals;
}

QString withoutZeros(QString number)
{
    const QString point = QLocale().decimalPoint();
    if (!number.contains(point))
        return number;
    while (number.endsWith(u'0'))
        number.chop(1);
    return number.endsWith(point) ? number.chopped(point.size()) : number;
}
} // namespace

PlotUnit::PlotUnit(const PlotLine &line)
    : PlotUnit(ValueUnit::of(line.inheritance, line.value.text()), line.reading)
{}

PlotUnit::PlotUnit(const ValueUnit &unit, PlotSeries::Reading reading)
    : factor_(unit.kind == UnitKind::Mask ? 1 : unit.factor)
    , symbol_(QString::fromUtf8(unit.symbol))
{
    const bool isRate = reading == PlotSeries::Reading::Rate;
    switch (unit.kind) {
    case UnitKind::Size:
    case UnitKind::Rate:
        form_ = Form::Size;
        symbol_ = unit.kind == UnitKind::Rate ? QStringLiteral("B/s") : QStringLiteral("B");
        break;
    case UnitKind::Prefixed:
        form_ = Form::Prefixed;
        if (isRate && symbol_ == QLatin1String("J")) {
            symbol_ = QStringLiteral("W");
            return;
        }
        break;
    case UnitKind::Time:
        if (isRate) { // the share of the time that passed
            factor_ *= 100;
            symbol_ = QStringLiteral("%");
            return;
        }
        form_ = Form::Time;
        break;
    default:
        break;
    }
    if (isRate)
        symbol_ += QStringLiteral("/s");
}

std::span<const PlotUnit::Prefix> PlotUnit::prefixes() const
{
    static constexpr Prefix none[] = {{1, ""}};
    static constexpr Prefix binary[] = {{1, ""},        {0x1p10, "Ki"}, {0x1p20, "Mi"},
                                        {0x1p30, "Gi"}, {0x1p40, "Ti"}, {0x1p50, "Pi"}};
    static constexpr Prefix decimal[] = {{1e-6, "µ"}, {1e-3, "m"}, {1, ""},    {1e3, "k"},
                                         {1e6, "M"},  {1e9, "G"},  {1e12, "T"}};
    static constexpr Prefix time[] = {{1e-9, "n"}, {1e-6, "µ"}, {1e-3, "m"}, {1, ""}};
    switch (form_) {
    case Form::Size:
        return binary;
    case Form::Prefixed:
        return decimal;
    case Form::Time:
        return time;
    default:
        return none;
    }
}

// The largest that the amount is at least one of.
const PlotUnit::Prefix &PlotUnit::prefixFor(double amount) const
{
    const Prefix *fitting = nullptr;
    for (const Prefix &prefix : prefixes()) {
        const bool fits = amount == 0 ? prefix.scale == 1 : std::abs(amount) >= prefix.scale;
        fitting = fits ? &prefix : fitting;
    }
    return fitting ? *fitting : prefixes().front();
}

QString PlotUnit::withUnit(const QString &number, const Prefix &prefix) const
{
    const QString unit = QString::fromUtf8(prefix.text) + symbol_;
    return unit.isEmpty() || unit.startsWith(u'/') ? number + unit : number + u' ' + unit;
}

QString PlotUnit::text(double amount) const
{
    const Prefix &prefix = prefixFor(amount * factor_);
    const double scaled = amount * factor_ / prefix.scale;
    return withUnit(withoutZeros(QLocale().toString(scaled, 'f', decimalsOf(scaled))), prefix);
}

QString PlotUnit::mark(double amount, double step) const
{
    const Prefix &prefix = prefixFor(amount * factor_);
    const double scale = factor_ / prefix.scale;
    return withUnit(QLocale().toString(amount * scale, 'f', decimalsFor(step * scale)), prefix);
}

double PlotUnit::step(double least, double greatest) const
{
    const double scale = factor_ / prefixFor(greatest * factor_).scale;
    const double wanted = least * scale;
    if (!(wanted > 0))
        return 1;
    const double power = std::pow(10, std::floor(std::log10(wanted)));
    for (const double factor : {1., 2., 5.}) {
        if (factor * power >= wanted)
            return factor * power / scale;
    }
    return 10 * power / scale;
}
