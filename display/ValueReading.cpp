// SPDX-License-Identifier: Apache-2.0
#include "display/ValueReading.h"

#include "model/TavRegistryEntry.h"

#include <QLocale>
#include <array>
#include <cmath>

namespace {
double scaled(const RegistryValue &number, double factor)
{
    return factor * (number.isSignedNumber() ? static_cast<double>(number.signedNumber())
                                             : static_cast<double>(number.numberBits()));
}

QString decimal(double amount, int decimals)
{
    return QLocale().toString(amount, 'f', decimals);
}

// With up to three decimals, but without zeros at the end.
QString shortened(double amount)
{
    int decimals = 0;
    double power = 1;
    while (decimals < 3 && std::abs(std::round(amount * power) / power - amount) > 0.0005) {
        ++decimals;
        power *= 10;
    }
    return decimal(amount, decimals);
}

QString size(double bytes)
{
    constexpr double limit = 9e18;
    return QLocale().formattedDataSize(static_cast<qint64>(std::min(bytes, limit)), 1);
}

QString prefixed(double amount, const char *symbol)
{
    static constexpr struct
    {
        double factor;
        const char *prefix;
    } prefixes[] = {{1e12, "T"}, {1e9, "G"}, {1e6, "M"}, {1e3, "k"}, {1, ""}, {1e-3, "m"}};
    for (const auto &[factor, prefix] : prefixes) {
        if (std::abs(amount) >= factor)
            return shortened(amount / factor) + u' ' + QLatin1String(prefix) +
                   QString::fromUtf8(symbol);
    }
    return amount == 0 ? QStringLiteral("0 ") + QString::fromUtf8(symbol)
                       : shortened(amount * 1e6) + QStringLiteral(" µ") + QString::fromUtf8(symbol);
}

QString shortTime(double seconds)
{
    static constexpr struct
    {
        double factor;
        const char *unit;
    } units[] = {{1, "s"}, {1e-3, "ms"}, {1e-6, "µs"}, {1e-9, "ns"}};
    for (const auto &[factor, unit] : units) {
        if (std::abs(seconds) >= factor)
            return shortened(seconds / factor) + u' ' + QString::fromUtf8(unit);
    }
    return QStringLiteral("0 s");
}

QString longTime(qint64 seconds)
{
    const std::array<std::pair<qint64, QString>, 4> parts{{{86400, ValueReading::tr("d")},
                                                           {3600, ValueReading::tr("h")},
                                                           {60, ValueReading::tr("min")},
                                                           {1, ValueReading::tr("s")}}};
    QStringList words;
    for (const auto &[length, unit] : parts) {
        if (seconds / length > 0)
            words += QString::number(seconds / length) + u' ' + unit;
        seconds %= length;
    }
    return words.join(u' ');
}

QString time(double seconds)
{
    constexpr double isLong = 60;
    constexpr double isBeyondReason = 1e15;
    return seconds >= isLong && seconds < isBeyondReason ? longTime(std::llround(seconds))
                                                         : shortTime(seconds);
}

QString bits(quint64 mask)
{
    QStringList ranges;
    for (int bit = 0; bit < 64; ++bit) {
        if (!(mask >> bit & 1))
            continue;
        const int first = bit;
        while (bit < 63 && mask >> (bit + 1) & 1)
            ++bit;
        ranges += first == bit ? QString::number(first)
                               : QString::number(first) + u'–' + QString::number(bit);
    }
    if (ranges.isEmpty())
        return ValueReading::tr("no bits");
    return (ranges.size() == 1 && !ranges[0].contains(u'–') ? ValueReading::tr("bit %1")
                                                            : ValueReading::tr("bits %1"))
        .arg(ranges.join(QStringLiteral(", ")));
}
} // namespace

QString ValueReading::ofProperty(const TavRegistryProperty &property)
{
    if (property.valueType() != RegistryValue::Type::Number)
        return {};
    const RegistryValue number = property.value();
    QString text = inBothBases(number);
    const std::shared_ptr<TavRegistryEntry> entry = property.registryEntry();
    constexpr qsizetype rootLength = 2; // of "//Key"
    const QString reading =
        entry ? inUnit(number,
                       ValueUnit::of(entry->inheritance(), property.propertyPath().mid(rootLength)))
              : QString();
    return reading.isEmpty() ? text : text + u'\n' + reading;
}

QString ValueReading::inBothBases(const RegistryValue &number)
{
    const QString text = number.isSignedNumber() ? QString::number(number.signedNumber())
                                                 : QString::number(number.numberBits());
    return QStringLiteral("%1 (0x%2)").arg(text, QString::number(number.numberBits(), 16));
}

QString ValueReading::inUnit(const RegistryValue &number, const ValueUnit &unit)
{
    const double amount = scaled(number, unit.factor);
    switch (unit.kind) {
    case ValueUnit::Kind::Size:
        return amount < 0 ? QString() : size(amount);
    case ValueUnit::Kind::Rate:
        return amount < 0 ? QString() : tr("%1/s").arg(size(amount));
    case ValueUnit::Kind::Prefixed:
        return prefixed(amount, unit.symbol);
    case ValueUnit::Kind::Plain:
        return decimal(amount, unit.factor < 1 ? 1 : 0) + u' ' + QString::fromUtf8(unit.symbol);
    case ValueUnit::Kind::Time:
        return amount < 0 ? QString() : time(amount);
    case ValueUnit::Kind::Mask:
        return bits(number.numberBits());
    default:
        return {};
    }
}
