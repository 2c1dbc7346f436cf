#pragma once

#include "model/linux/HostObject.h"

#include <QDateTime>
#include <QHash>
#include <QMap>

// What was read of single objects on request. Each attribute keeps its last value in later
// readings, marked by its date in "DxReadOnRequest".
class RequestedAttributes
{
public:
    void add(quint64 node, const RawObject &read);
    // To what the reading has left out of the object.
    void addTo(HostObject &object) const;
    // Those that did not answer are as if they had never been asked for.
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
    struct Requested // by their paths below the object's directory
    {
        QMap<QByteArray, Value> values;
        QMap<QByteArray, RawObject::Unread> unread;
    };

    QHash<quint64, Requested> byNode_;
};

// Adds members to those that are there; dictionaries of the same key become one.
RegistryValue::Members mergedMembers(RegistryValue::Members base,
                                     const RegistryValue::Members &added);
