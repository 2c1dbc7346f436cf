#pragma once

#include "model/RegistryValue.h"

#include <QDateTime>
#include <QHash>

// What was read of single objects on request. Each keeps its last value in later sweeps, marked by
// its date.
class RequestedAttributes
{
public:
    void set(quint64 id, RegistryValue::Members members);
    void addTo(RegistryValue::Members &members, quint64 id) const;
    template<class Predicate>
    void keepOnly(Predicate isThere) // by ID
    {
        byID_.removeIf([&](const auto &its) { return !isThere(its.key()); });
    }

private:
    struct Requested
    {
        RegistryValue::Members members;
        QDateTime date;
    };

    QHash<quint64, Requested> byID_;
};

// Adds members to those that are there; dictionaries of the same key become one.
RegistryValue::Members mergedMembers(RegistryValue::Members base,
                                     const RegistryValue::Members &added);
