// SPDX-License-Identifier: Apache-2.0
#include "display/ValueUnit.h"

#include "platform/text/WildPattern.h"

#include <QFile>
#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <algorithm>
#include <vector>

namespace {
using Kind = ValueUnit::Kind;

const QHash<QByteArray, ValueUnit> &unitsByName()
{
    static const QHash<QByteArray, ValueUnit> units{
        {"bytes", {Kind::Size, 1}},
        {"KiB", {Kind::Size, 1024}},
        {"MiB", {Kind::Size, 1024 * 1024}},
        {"sectors", {Kind::Size, 512}},
        {"bytes/s", {Kind::Rate, 1}},
        {"KiB/s", {Kind::Rate, 1024}},
        {"Mbit/s", {Kind::Prefixed, 1e6, "bit/s"}},
        {"Hz", {Kind::Prefixed, 1, "Hz"}},
        {"kHz", {Kind::Prefixed, 1e3, "Hz"}},
        {"MHz", {Kind::Prefixed, 1e6, "Hz"}},
        {"mV", {Kind::Prefixed, 1e-3, "V"}},
        {"uV", {Kind::Prefixed, 1e-6, "V"}},
        {"mA", {Kind::Prefixed, 1e-3, "A"}},
        {"uA", {Kind::Prefixed, 1e-6, "A"}},
        {"mW", {Kind::Prefixed, 1e-3, "W"}},
        {"uW", {Kind::Prefixed, 1e-6, "W"}},
        {"uJ", {Kind::Prefixed, 1e-6, "J"}},
        {"uWh", {Kind::Prefixed, 1e-6, "Wh"}},
        {"uAh", {Kind::Prefixed, 1e-6, "Ah"}},
        {"mC", {Kind::Plain, 1e-3, "°C"}},
        {"dC", {Kind::Plain, 0.1, "°C"}},
        {"%", {Kind::Plain, 1, "%"}},
        {"m%", {Kind::Plain, 1e-3, "%"}},
        {"rpm", {Kind::Plain, 1, "rpm"}},
        {"s", {Kind::Time, 1}},
        {"cs", {Kind::Time, 1e-2}},
        {"ms", {Kind::Time, 1e-3}},
        {"us", {Kind::Time, 1e-6}},
        {"ns", {Kind::Time, 1e-9}},
        {"mask", {Kind::Mask, 1}},
    };
    return units;
}
struct Rule
{
    QString className; // null: every entry
    WildPattern keyPath;
    ValueUnit unit;
};

// By the last key of the path, as most patterns end in a plain one; others under a null key.
using Rules = QHash<QByteArray, std::vector<Rule>>;

QByteArray lastKey(const QByteArray &path)
{
    return path.sliced(path.lastIndexOf('/') + 1);
}

void addRules(Rules &rules, const QJsonObject &row)
{
    const QByteArray name = row.value(QLatin1String("unit")).toString().toLatin1();
    const auto unit = unitsByName().constFind(name);
    if (unit == unitsByName().constEnd())
        qFatal("units/units.json: unknown unit %s", name.constData());
    for (const auto &key : row.value(QLatin1String("keys")).toArray()) {
        const QByteArray path = key.toString().toUtf8();
        const QByteArray last = lastKey(path);
        rules[WildPattern(last).isPlain() ? last : QByteArray()].push_back(
            {row.value(QLatin1String("class")).toString(), WildPattern(path), *unit});
    }
}

const Rules &allRules()
{
    static const Rules rules = [] {
        QFile file(QStringLiteral(":/units/units.json"));
        const bool isOpen = file.open(QIODevice::ReadOnly);
        const QJsonArray rows = QJsonDocument::fromJson(isOpen ? file.readAll() : QByteArray())
                                    .object()
                                    .value(QLatin1String("units"))
                                    .toArray();
        if (rows.isEmpty())
            qFatal("units/units.json is missing from the program's resources");
        Rules read;
        for (const auto &row : rows)
            addRules(read, row.toObject());
        return read;
    }();
    return rules;
}
} // namespace

ValueUnit ValueUnit::of(const QStringList &inheritance, const QString &keyPath)
{
    const QByteArray path = keyPath.toUtf8();
    for (const QByteArray &key : {lastKey(path), QByteArray()}) {
        const auto rules = allRules().constFind(key);
        if (rules == allRules().constEnd())
            continue;
        for (const Rule &rule : *rules) {
            if ((rule.className.isEmpty() || inheritance.contains(rule.className)) &&
                rule.keyPath.matches(path))
                return rule.unit;
        }
    }
    return {};
}
