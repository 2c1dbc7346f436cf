#pragma once

#include "model/linux/HostObject.h"

#include <QDateTime>
#include <QHash>

// What was read of single objects on request. Each keeps its last value in later sweeps, marked by
// its date.
class RequestedAttributes
{
public:
    void set(quint64 node, SweepObject read);
    void addTo(HostObject &object) const;
    template<class Predicate>
    void keepOnly(Predicate isThere) // by node
    {
        byNode_.removeIf([&](const auto &its) { return !isThere(its.key()); });
    }

private:
    struct Requested
    {
        RegistryValue::Members members;
        QDateTime date; // when there are any
        std::vector<SweepObject::Unread> unread;
    };

    QHash<quint64, Requested> byNode_;
};

// Adds members to those that are there; dictionaries of the same key become one.
RegistryValue::Members mergedMembers(RegistryValue::Members base,
                                     const RegistryValue::Members &added);
