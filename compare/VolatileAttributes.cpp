// SPDX-License-Identifier: Apache-2.0
#include "compare/VolatileAttributes.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace {
QByteArray table()
{
    QFile file(QStringLiteral(":/compare/volatile.json"));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("compare/volatile.json: %s", qUtf8Printable(file.errorString()));
    return file.readAll();
}
} // namespace

const VolatileAttributes &VolatileAttributes::standard()
{
    static const VolatileAttributes attributes(table());
    return attributes;
}

VolatileAttributes::VolatileAttributes(const QByteArray &json)
{
    QJsonParseError error;
    const QJsonObject root = QJsonDocument::fromJson(json, &error).object();
    if (error.error != QJsonParseError::NoError)
        qFatal("compare/volatile.json: %s", qUtf8Printable(error.errorString()));
    attributes_ = keysOfSubsystems(root[QLatin1String("attributes")].toObject());
    counters_ = keysOfSubsystems(root[QLatin1String("counters")].toObject());
    const QJsonObject numbered = root[QLatin1String("numberedByDiscovery")].toObject();
    numberedSubsystems_ = keysIn(numbered[QLatin1String("subsystems")].toArray()).exact;
    numberKeys_ = keysIn(numbered[QLatin1String("keys")].toArray());
}

VolatileAttributes::KeysOfSubsystems VolatileAttributes::keysOfSubsystems(const QJsonObject &table)
{
    KeysOfSubsystems keys;
    for (auto subsystem = table.begin(); subsystem != table.end(); ++subsystem)
        keys.insert(subsystem.key(), keysIn(subsystem.value().toArray()));
    return keys;
}

VolatileAttributes::Keys VolatileAttributes::keysIn(const QJsonArray &list)
{
    Keys keys;
    for (const QJsonValueConstRef item : list) {
        const QString key = item.toString();
        if (key.contains(u'*'))
            keys.patterns.append(
                QRegularExpression(QRegularExpression::wildcardToRegularExpression(key)));
        else
            keys.exact.insert(key);
    }
    return keys;
}

bool VolatileAttributes::matches(const Keys &keys, const QString &path)
{
    return keys.exact.contains(path) ||
           std::any_of(keys.patterns.begin(), keys.patterns.end(),
                       [&](const auto &pattern) { return pattern.match(path).hasMatch(); });
}

bool VolatileAttributes::contains(const KeysOfSubsystems &table, const QString &subsystem,
                                  const QString &path)
{
    const auto isIn = [&](const QString &name) {
        const auto keys = table.constFind(name);
        if (keys == table.constEnd())
            return false;
        for (qsizetype end = path.size(); end >= 0; end = path.lastIndexOf(u'/', end - 1)) {
            if (matches(*keys, path.first(end)))
                return true;
            if (end == 0)
                break;
        }
        return false;
    };
    return isIn(subsystem) || isIn(QStringLiteral("*"));
}
