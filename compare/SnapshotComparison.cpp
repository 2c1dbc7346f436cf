// SPDX-License-Identifier: Apache-2.0
#include "compare/SnapshotComparison.h"

#include "compare/ComparedPlanes.h"
#include "compare/EntryIdentity.h"
#include "compare/VolatileAttributes.h"
#include "store/TavDataStore.h"

namespace {
constexpr std::size_t betweenReports = 256;

using Members = RegistryValue::Members;

// The members of each that the other has not, or with another value.
struct DifferingMembers
{
    Members before;
    Members after;
};

bool haveSameKeys(std::span<const RegistryValue::Member> before,
                  std::span<const RegistryValue::Member> after)
{
    return std::equal(before.begin(), before.end(), after.begin(), after.end(),
                      [](const auto &older, const auto &newer) { return older.key == newer.key; });
}

// Of tables with the same keys in the same order, as nearly all have.
DifferingMembers differingValues(std::span<const RegistryValue::Member> before,
                                 std::span<const RegistryValue::Member> after)
{
    DifferingMembers differing;
    for (std::size_t i = 0; i < before.size(); ++i) {
        if (before[i].value.meansTheSameAs(after[i].value))
            continue;
        differing.before.push_back(before[i]);
        differing.after.push_back(after[i]);
    }
    return differing;
}

DifferingMembers differingMembers(const RegistryValue &before, const RegistryValue &after)
{
    if (haveSameKeys(before.members(), after.members()))
        return differingValues(before.members(), after.members());
    const auto keyOf = [](const RegistryValue::Member &member) {
        return QStringView(member.key.data(), member.key.size());
    };
    QHash<QStringView, const RegistryValue *> older;
    for (const auto &member : before.members())
        older.insert(keyOf(member), &member.value);
    DifferingMembers differing;
    QSet<QStringView> equal;
    for (const auto &member : after.members()) {
        const RegistryValue *const old = older.value(keyOf(member));
        if (old && old->meansTheSameAs(member.value))
            equal.insert(keyOf(member));
        else
            differing.after.push_back(member);
    }
    for (const auto &member : before.members()) {
        if (!equal.contains(keyOf(member)))
            differing.before.push_back(member);
    }
    return differing;
}

PropertyRef treeOf(Members members)
{
    PropertyRef tree =
        TavRegistryProperty::create(TavRegistryProperty::staticPropertyClass(), {}, {}, nullptr, {},
                                    0, RegistryValue::dictionary(std::move(members)));
    if (tree)
        tree->clearIsNew();
    return tree;
}

QString stateText(const TavRegistryEntry &entry)
{
    QStringList states;
    if (entry.isRegistered())
        states.append(QStringLiteral("registered"));
    if (entry.isMatched())
        states.append(QStringLiteral("matched"));
    if (entry.isActive())
        states.append(QStringLiteral("active"));
    return states.join(QLatin1String(", "));
}

quint8 stateFlags(const TavRegistryEntry &entry)
{
    return entry.facts().flags &
           (EntryRecord::Registered | EntryRecord::Matched | EntryRecord::Active);
}

QString pathIn(const TavRegistryEntry &entry, const QString &plane)
{
    return entry.registryPathsInPlane(plane).value(0);
}
} // namespace

SnapshotComparison::SnapshotComparison(const TavDataStore &before, const TavDataStore &after,
                                       Options options, const Reach &reach)
    : before_(before)
    , after_(after)
    , options_(std::move(options))
    , pairing_(before, after, volatileAttributes())
    , beforePlaces_(before.entryNumberLimit(), noPlace)
    , afterPlaces_(after.entryNumberLimit(), noPlace)
{
    listInOrder();
    judgeAll(reach);
}

const VolatileAttributes &SnapshotComparison::volatileAttributes() const
{
    return VolatileAttributes::standard();
}

const EntryDifference *SnapshotComparison::differenceOf(const TavRegistryEntry &entry) const
{
    const bool isAfter = entry.dataStore() == &after_;
    if (!isAfter && entry.dataStore() != &before_)
        return nullptr;
    const Places &places = isAfter ? afterPlaces_ : beforePlaces_;
    const quint32 place = entry.number() < places.size() ? places[entry.number()] : noPlace;
    return place == noPlace ? nullptr : &differences_[place];
}

void SnapshotComparison::listInOrder()
{
    const QStringList planes = ComparedPlanes::of(before_, after_);
    const std::size_t all = EntryPairing::countPresent(before_) +
                            EntryPairing::countPresent(after_) - pairing_.pairs().size();
    for (const QString &plane : planes) {
        listPlane(plane);
        if (differences_.size() >= all)
            return;
    }
    for (const EntryRef &entry : after_.registryEntries()) {
        if (EntryPairing::isPresent(*entry) && !isListed(*entry, true))
            addDifference(pairing_.inBefore(*entry), entry.get());
    }
    for (const EntryRef &entry : before_.registryEntries()) {
        if (EntryPairing::isPresent(*entry) && !isListed(*entry, false))
            addDifference(entry.get(), nullptr);
    }
}

bool SnapshotComparison::isListed(const TavRegistryEntry &entry, bool isAfter) const
{
    return (isAfter ? afterPlaces_ : beforePlaces_)[entry.number()] != noPlace;
}

void SnapshotComparison::addDifference(TavRegistryEntry *before, TavRegistryEntry *after)
{
    const auto place = static_cast<quint32>(differences_.size());
    differences_.push_back({before, after});
    if (before)
        beforePlaces_[before->number()] = place;
    if (after)
        afterPlaces_[after->number()] = place;
}

// Walks down from the root, first child first. Entries seen in another plane are passed through.
void SnapshotComparison::listPlane(const QString &plane)
{
    struct Step
    {
        TavRegistryEntry *before;
        TavRegistryEntry *after;
    };
    const std::vector<bool> hasRemoved = parentsOfRemoved(plane);
    std::vector<Step> pending{{before_.registryRoot(), after_.registryRoot()}};
    std::vector<bool> wasBefore(before_.entryNumberLimit(), false);
    std::vector<bool> wasAfter(after_.entryNumberLimit(), false);
    while (!pending.empty()) {
        const Step step = pending.back();
        pending.pop_back();
        if (!step.before && !step.after)
            continue;
        auto was = step.after ? wasAfter[step.after->number()] : wasBefore[step.before->number()];
        if (was)
            continue;
        was = true;
        if (!isListed(step.after ? *step.after : *step.before, step.after != nullptr))
            addDifference(step.before, step.after);
        const bool hasOlder = step.before && (!step.after || hasRemoved[step.before->number()]);
        const auto children = childrenInOrder(hasOlder ? step.before : nullptr, step.after, plane);
        for (auto child = children.rbegin(); child != children.rend(); ++child) {
            const bool isAfter = (*child)->dataStore() == &after_ && step.after;
            pending.push_back(isAfter ? Step{pairing_.inBefore(**child), *child}
                                      : Step{*child, nullptr});
        }
    }
}

// By the numbers of the entries of before.
std::vector<bool> SnapshotComparison::parentsOfRemoved(const QString &plane) const
{
    std::vector<bool> parents(before_.entryNumberLimit(), false);
    for (const EntryRef &entry : before_.registryEntries()) {
        if (pairing_.inAfter(*entry) || !EntryPairing::isPresent(*entry))
            continue;
        for (const TavRegistryEntry *const parent : entry->parentsInPlane(plane))
            parents[parent->number()] = true;
    }
    return parents;
}

// Those of after, and those of before that were removed.
EntryList::Entries SnapshotComparison::childrenInOrder(const TavRegistryEntry *before,
                                                       const TavRegistryEntry *after,
                                                       const QString &plane) const
{
    EntryList::Entries children;
    if (after) {
        for (TavRegistryEntry *const child : after->childrenInPlane(plane)) {
            if (EntryPairing::isPresent(*child))
                children.push_back(child);
        }
    }
    EntryList::Entries removed;
    if (before) {
        for (TavRegistryEntry *const child : before->childrenInPlane(plane)) {
            if (EntryPairing::isPresent(*child) && !pairing_.inAfter(*child))
                removed.push_back(child);
        }
    }
    if (removed.empty())
        return children;
    EntryList::Entries merged(children.size() + removed.size());
    std::merge(children.begin(), children.end(), removed.begin(), removed.end(), merged.begin(),
               [&plane](const TavRegistryEntry *a, const TavRegistryEntry *b) {
                   return a->nameAtLocationInPlane(plane).compare(b->nameAtLocationInPlane(plane),
                                                                  Qt::CaseInsensitive) < 0;
               });
    return merged;
}

// In the order of the entries in memory, in which the order of the planes jumps to and fro.
void SnapshotComparison::judgeAll(const Reach &reach)
{
    std::size_t done = 0;
    const auto judgeNext = [&](EntryDifference &difference) {
        if (done++ % betweenReports == 0 && reach)
            reach(static_cast<double>(done) / static_cast<double>(differences_.size()));
        judge(difference);
        count(difference);
    };
    for (const EntryRef &entry : after_.registryEntries()) {
        const quint32 place = afterPlaces_[entry->number()];
        if (place != noPlace)
            judgeNext(differences_[place]);
    }
    for (EntryDifference &difference : differences_) {
        if (!difference.after)
            judgeNext(difference);
    }
}

void SnapshotComparison::judge(EntryDifference &difference) const
{
    if (!difference.before || !difference.after) {
        difference.kind = difference.after ? DifferenceKind::Added : DifferenceKind::Removed;
        return;
    }
    const TavRegistryEntry &before = *difference.before;
    const TavRegistryEntry &after = *difference.after;
    difference.facts = placeDifferences(difference);
    judgeName(difference);
    difference.facts.setFlag(FactDifference::Class, before.inheritance() != after.inheritance());
    difference.facts.setFlag(FactDifference::Driver, before.bundleID() != after.bundleID());
    difference.facts.setFlag(FactDifference::State, stateFlags(before) != stateFlags(after));
    judgeProperties(difference);
    using enum FactDifference;
    difference.kind = difference.facts.testFlag(Parent)      ? DifferenceKind::Moved
                      : difference.facts & (Name | Location) ? DifferenceKind::Renamed
                      : difference.facts                     ? DifferenceKind::Changed
                                                             : DifferenceKind::Same;
}

// A place in the service plane is the entry's own; the others say what it is linked with.
FactDifferences SnapshotComparison::placeDifferences(const EntryDifference &difference) const
{
    FactDifferences facts;
    for (const auto &item : difference.after->facts().parentsInPlanes) {
        const QString plane = item.plane();
        if (!haveSameParents(difference, plane))
            facts |=
                plane == ComparedPlanes::service ? FactDifference::Parent : FactDifference::Links;
    }
    for (const auto &item : difference.before->facts().parentsInPlanes) {
        const QString plane = item.plane();
        if (!difference.after->facts().parentsInPlanes.find(plane) &&
            !haveSameParents(difference, plane))
            facts |=
                plane == ComparedPlanes::service ? FactDifference::Parent : FactDifference::Links;
    }
    const bool isOutside = difference.before->parentsInPlane(ComparedPlanes::service).empty() &&
                           difference.after->parentsInPlane(ComparedPlanes::service).empty();
    if (isOutside && facts.testFlag(FactDifference::Links))
        facts = FactDifference::Parent;
    return facts;
}

bool SnapshotComparison::haveSameParents(const EntryDifference &difference,
                                         const QString &plane) const
{
    const auto &before = difference.before->parentsInPlane(plane);
    const auto &after = difference.after->parentsInPlane(plane);
    if (before.size() == 1 && after.size() == 1) // nearly always
        return pairing_.inAfter(*before.front()) == after.front();
    const auto present = [](const auto &parents) {
        return std::count_if(parents.begin(), parents.end(),
                             [](const auto *parent) { return EntryPairing::isPresent(*parent); });
    };
    if (present(before) != present(after))
        return false;
    EntrySet expected;
    for (const TavRegistryEntry *const parent : before) {
        if (EntryPairing::isPresent(*parent))
            expected.insert(pairing_.inAfter(*parent));
    }
    return std::all_of(after.begin(), after.end(), [&](TavRegistryEntry *parent) {
        return !EntryPairing::isPresent(*parent) || expected.contains(parent);
    });
}

void SnapshotComparison::judgeName(EntryDifference &difference) const
{
    FactDifferences names;
    names.setFlag(FactDifference::Name, difference.before->nameInPlane(ComparedPlanes::service) !=
                                            difference.after->nameInPlane(ComparedPlanes::service));
    names.setFlag(FactDifference::Location,
                  difference.before->locationInPlane(ComparedPlanes::service) !=
                      difference.after->locationInPlane(ComparedPlanes::service));
    if (!names)
        return;
    const bool isOnlyNumber = isRenumbered(difference);
    difference.isVolatile = difference.isVolatile || isOnlyNumber;
    if (!isOnlyNumber || options_.showsVolatile)
        difference.facts |= names;
}

bool SnapshotComparison::isRenumbered(const EntryDifference &difference) const
{
    const QString &before = difference.before->facts().name;
    const QString &after = difference.after->facts().name;
    return before != after &&
           volatileAttributes().isNumberedByDiscovery(
               EntryIdentity::subsystemOf(*difference.after)) &&
           EntryIdentity::nameWithoutNumber(before) == EntryIdentity::nameWithoutNumber(after);
}

void SnapshotComparison::judgeProperties(EntryDifference &difference) const
{
    const TavRegistryEntry &before = *difference.before;
    const TavRegistryEntry &after = *difference.after;
    const bool haveTables = !before.table().isNone() && !after.table().isNone();
    if (haveTables && before.table().isSameCollectionAs(after.table()))
        return;
    PropertyRef older;
    PropertyRef newer;
    if (haveTables) {
        DifferingMembers differing = differingMembers(before.table(), after.table());
        if (differing.before.empty() && differing.after.empty())
            return;
        older = treeOf(std::move(differing.before)); // only these need trees
        newer = treeOf(std::move(differing.after));
    } else {
        older = before.copyOfProperties(TavRegistryProperty::staticPropertyClass());
        newer = after.copyOfProperties(TavRegistryProperty::staticPropertyClass());
    }
    if (!older != !newer) {
        difference.facts |= FactDifference::Properties;
        return;
    }
    const PropertyDifferences found(older, newer, rulesFor(difference));
    for (const auto &change : found.changes()) {
        if (change.isIgnored)
            continue;
        if (change.isVolatile)
            difference.isVolatile = true;
        if (!change.isVolatile || options_.showsVolatile)
            difference.facts |= FactDifference::Properties;
    }
}

PropertyDifferences::Rules SnapshotComparison::rulesFor(const EntryDifference &difference) const
{
    PropertyDifferences::Rules rules{
        .volatileAttributes = &volatileAttributes(),
        .subsystem = EntryIdentity::subsystemOrClass(difference.entry()),
        .ignoredKeys = QSet<QString>(options_.ignoredKeys.begin(), options_.ignoredKeys.end())};
    // Up the service plane, first parents only; bounded, since a hostile plane may be a ring.
    constexpr int maxDepth = 64;
    const TavRegistryEntry *at = difference.after;
    for (int depth = 0; at && depth < maxDepth; ++depth) {
        const EntryDifference pair{pairing_.inBefore(*at), const_cast<TavRegistryEntry *>(at)};
        if (pair.before && isRenumbered(pair)) {
            rules.isRenumbered = true;
            rules.renumbered.emplace_back(pair.before->facts().name, at->facts().name);
        }
        const auto &parents = at->parentsInPlane(ComparedPlanes::service);
        at = parents.empty() ? nullptr : parents.front();
    }
    return rules;
}

void SnapshotComparison::count(const EntryDifference &difference)
{
    switch (difference.kind) {
    case DifferenceKind::Same:
        ++counts_.same;
        break;
    case DifferenceKind::Changed:
        ++counts_.changed;
        break;
    case DifferenceKind::Moved:
        ++counts_.moved;
        break;
    case DifferenceKind::Renamed:
        ++counts_.renamed;
        break;
    case DifferenceKind::Added:
        ++counts_.added;
        break;
    case DifferenceKind::Removed:
        ++counts_.removed;
        break;
    }
}

std::vector<SnapshotComparison::FactChange>
SnapshotComparison::factChanges(const EntryDifference &difference) const
{
    std::vector<FactChange> changes;
    if (!difference.before || !difference.after)
        return changes;
    const auto add = [&](FactDifference fact, const auto &text) {
        if (difference.facts.testFlag(fact))
            changes.push_back({fact, text(*difference.before), text(*difference.after)});
    };
    using Entry = const TavRegistryEntry &;
    add(FactDifference::Name,
        [](Entry entry) { return entry.nameInPlane(ComparedPlanes::service); });
    add(FactDifference::Location,
        [](Entry entry) { return entry.locationInPlane(ComparedPlanes::service); });
    add(FactDifference::Parent, [](Entry entry) {
        const auto &planes = entry.facts().parentsInPlanes;
        const QString plane = planes.find(ComparedPlanes::service) || planes.isEmpty()
                                  ? ComparedPlanes::service
                                  : planes.begin()->plane();
        return pathIn(entry, plane);
    });
    add(FactDifference::Class, [](Entry entry) { return entry.inheritanceString(); });
    add(FactDifference::Driver, [](Entry entry) { return entry.bundleID(); });
    add(FactDifference::State, stateText);
    add(FactDifference::Links, [](Entry entry) {
        QStringList paths;
        for (const auto &item : entry.facts().parentsInPlanes) {
            if (item.plane() != ComparedPlanes::service)
                paths.append(pathIn(entry, item.plane()));
        }
        return paths.join(QLatin1String(", "));
    });
    return changes;
}

PropertyDifferences SnapshotComparison::propertyDifferences(const EntryDifference &difference,
                                                            const PropertyClass &nodeClass) const
{
    if (!difference.before || !difference.after)
        return PropertyDifferences(difference.entry().copyOfProperties(nodeClass));
    return {difference.before->copyOfProperties(nodeClass),
            difference.after->copyOfProperties(nodeClass), rulesFor(difference)};
}
