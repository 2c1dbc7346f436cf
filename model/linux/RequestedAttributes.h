// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/linux/HostObject.h"

#include <QDateTime>
#include <QHash>
#include <QMap>

// Attributes of single objects read on request. Each keeps its last value in later readings, with
// its date in "DxReadOnRequest".
class RequestedAttributes
{
public:
    void add(quint64 node, const RawObject &read);
    // Adds what the reading left out of the object.
    void addTo(HostObject &object) const;
    // Forgets attributes that did not answer.
    void forgetUnanswered();
    template<class Predicate>
    void keepOnly(Predicate isThere) // by node
    {
        byNode_.removeIf([&](const auto &its) { return !isThere(its.key()); });
    }

private:
    struct Value
    {
        RegistryValue value;
        QDateTime date;
    };
    struct Requested // by path below the object's directory
    {
        QMap<QByteArray, Value> values;
        QMap<QByteArray, RawObject::Unread> unread;
    };

    QHash<quint64, Requested> byNode_;
};

// Merges members; dictionaries with the same key are merged, too.
RegistryValue::Members mergedMembers(RegistryValue::Members base,
                                     const RegistryValue::Members &added);
