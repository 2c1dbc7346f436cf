// SPDX-License-Identifier: Apache-2.0
#include "model/NamesByPlane.h"

#include <array>

namespace {
QStringView textOf(const CompactString &text)
{
    return {text.data(), text.size()};
}
} // namespace

// Shares a few recent sets of planes; more are rare. The cache is global, so that entries of all
// stores share, and per thread, so that it needs no lock.
NamesByPlane::PlanesRef NamesByPlane::shared(Strings planes)
{
    static thread_local std::array<PlanesRef, 64> known;
    std::size_t hash = planes.size();
    for (const CompactString &plane : planes)
        hash = qHash(textOf(plane), hash);
    auto &slot = known[hash % known.size()];
    if (!slot || slot->names != planes) {
        planes.shrink_to_fit();
        slot = PlanesRef(new Planes(std::move(planes)));
    }
    return slot;
}

std::size_t NamesByPlane::lowerBound(const QString &plane) const
{
    if (!planes_)
        return 0;
    // Fast path: names of planes share their text.
    const auto found =
        std::lower_bound(planes_->names.begin(), planes_->names.end(), plane,
                         [](const CompactString &known, const QString &sought) {
                             return known.data() != sought.constData() && textOf(known) < sought;
                         });
    return static_cast<std::size_t>(found - planes_->names.begin());
}

bool NamesByPlane::isAt(std::size_t index, const QString &plane) const
{
    return index < size() && textOf(planes_->names[index]) == plane;
}

const CompactString *NamesByPlane::find(const QString &plane) const
{
    const std::size_t index = lowerBound(plane);
    return isAt(index, plane) ? &name(index) : nullptr;
}

void NamesByPlane::set(const QString &plane, const CompactString &name)
{
    const std::size_t index = lowerBound(plane);
    if (!isAt(index, plane)) {
        insert(index, plane, name);
        return;
    }
    if (each_) {
        each_[index] = name;
    } else if (size() == 1) {
        all_ = name;
    } else if (!(all_ == name)) {
        each_ = std::make_unique<CompactString[]>(size());
        std::fill_n(each_.get(), size(), all_);
        each_[index] = name;
    }
}

// Entries are given their planes in the same order, so the next set is nearly always known.
NamesByPlane::PlanesRef NamesByPlane::with(const PlanesRef &planes, std::size_t index,
                                           const QString &plane)
{
    struct Step
    {
        PlanesRef from;
        CompactString plane;
        PlanesRef to;
    };
    static thread_local std::array<Step, 64> known;
    auto &step = known[planes ? planes->names.size() % known.size() : 0];
    if (!step.to || step.from != planes || textOf(step.plane) != plane) {
        Strings names = planes ? planes->names : Strings();
        const CompactString added(plane);
        names.insert(names.begin() + static_cast<Strings::difference_type>(index), added);
        step = {planes, added, shared(std::move(names))};
    }
    return step.to;
}

void NamesByPlane::insert(std::size_t index, const QString &plane, const CompactString &name)
{
    if (!each_ && (size() == 0 || name == all_)) {
        all_ = name;
        planes_ = with(planes_, index, plane);
        return;
    }
    Strings names;
    for (std::size_t i = 0; i < size(); ++i)
        names.push_back(this->name(i));
    names.insert(names.begin() + static_cast<Strings::difference_type>(index), name);
    planes_ = with(planes_, index, plane);
    setNames(names);
}

void NamesByPlane::assign(Strings planes, const Strings &names)
{
    setNames(names);
    planes_ = planes.empty() ? PlanesRef() : shared(std::move(planes));
}

void NamesByPlane::setNames(const Strings &names)
{
    each_.reset();
    all_ = names.empty() ? CompactString() : names.front();
    if (!std::all_of(names.begin(), names.end(), [&](const auto &name) { return name == all_; })) {
        each_ = std::make_unique<CompactString[]>(names.size());
        std::copy(names.begin(), names.end(), each_.get());
        all_ = {};
    }
}

bool NamesByPlane::areAllAt(const QChar *text) const
{
    if (!each_)
        return size() == 0 || all_.data() == text;
    return std::all_of(each_.get(), each_.get() + size(),
                       [&](const CompactString &name) { return name.data() == text; });
}
