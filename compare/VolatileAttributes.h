// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QHash>
#include <QRegularExpression>
#include <QSet>
#include <QStringList>

// Attributes that change all the time or with every start and so say nothing about what happened:
// counters, clocks, temperatures, and what depends on the order of discovery.
class VolatileAttributes
{
public:
    static const VolatileAttributes &standard();         // from resources/compare/volatile.json
    explicit VolatileAttributes(const QByteArray &json); // ends the program if it is broken

    // Whether the value at a path of keys, or a collection that it is in, is volatile for devices
    // of a subsystem.
    bool contains(const QString &subsystem, const QString &path) const
    {
        return contains(attributes_, subsystem, path);
    }
    // Whether it only ever grows, until it is reset.
    bool isCounter(const QString &subsystem, const QString &path) const
    {
        return contains(counters_, subsystem, path);
    }
    // Whether a subsystem numbers its devices in the order of discovery, such as input5.
    bool isNumberedByDiscovery(const QString &subsystem) const
    {
        return numberedSubsystems_.contains(subsystem);
    }
    // Whether the value follows from such a number, such as DEVNAME.
    bool followsFromNumber(const QString &path) const { return matches(numberKeys_, path); }

private:
    // Keys, as they are and with wildcards.
    struct Keys
    {
        QSet<QString> exact;
        QList<QRegularExpression> patterns;
    };
    using KeysOfSubsystems = QHash<QString, Keys>; // "*": of all
    static KeysOfSubsystems keysOfSubsystems(const class QJsonObject &table);
    static bool contains(const KeysOfSubsystems &table, const QString &subsystem,
                         const QString &path);
    static Keys keysIn(const class QJsonArray &list);
    static bool matches(const Keys &keys, const QString &path);

    KeysOfSubsystems attributes_;
    KeysOfSubsystems counters_;
    QSet<QString> numberedSubsystems_;
    Keys numberKeys_;
};
