// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/text/CompactArray.h"

#include <QSharedData>
#include <memory>
#include <vector>

// The names of an entry by plane. Small: entries share the list of planes, and most have one name
// in all of them.
class NamesByPlane
{
public:
    using Strings = std::vector<CompactString>;

    const CompactString *find(const QString &plane) const; // null: none
    void set(const QString &plane, const CompactString &name);
    // The planes must be sorted and unique.
    void assign(Strings planes, const Strings &names);

    std::size_t size() const { return planes_ ? planes_->names.size() : 0; }
    QString plane(std::size_t index) const { return planes_->names[index].toOwner(); }
    const CompactString &name(std::size_t index) const { return each_ ? each_[index] : all_; }
    bool areAllAt(const QChar *text) const; // whether every name is the text at this address

private:
    std::size_t lowerBound(const QString &plane) const;
    bool isAt(std::size_t index, const QString &plane) const;
    void insert(std::size_t index, const QString &plane, const CompactString &name);
    struct Planes : QSharedData
    {
        explicit Planes(Strings sorted)
            : names(std::move(sorted))
        {}
        Strings names;
    };
    using PlanesRef = QExplicitlySharedDataPointer<Planes>;
    static PlanesRef shared(Strings planes);
    static PlanesRef with(const PlanesRef &planes, std::size_t index, const QString &plane);
    void setNames(const Strings &names);

    PlanesRef planes_; // null: none
    CompactString all_;
    std::unique_ptr<CompactString[]> each_; // null: all names are all_
};
