// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "activity/PlotLine.h"
#include "display/ValueUnit.h"

#include <span>

// In what the amounts of a plotted line are shown: the unit of its number, or that per second.
class PlotUnit
{
public:
    explicit PlotUnit(const PlotLine &line);
    PlotUnit(const ValueUnit &unit, PlotSeries::Reading reading);

    QString text(double amount) const; // "1.2 MiB/s"
    // The same as the text of a mark beside others in such steps.
    QString mark(double amount, double step) const;
    // A round distance of marks, at least the least, where amounts are up to the greatest.
    double step(double least, double greatest) const;

    friend bool operator==(const PlotUnit &, const PlotUnit &) = default;

private:
    enum class Form : quint8 { Plain, Size, Prefixed, Time };
    struct Prefix;

    std::span<const Prefix> prefixes() const;
    const Prefix &prefixFor(double amount) const;
    QString withUnit(const QString &number, const Prefix &prefix) const;

    Form form_ = Form::Plain;
    double factor_ = 1;
    QString symbol_; // with "/s" for rates
};
