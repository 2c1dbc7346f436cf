// SPDX-License-Identifier: Apache-2.0
#include "compare/ComparisonStore.h"

#include "compare/ComparedPlanes.h"

namespace {
constexpr quint64 firstFreeTag = quint64(1) << 62;

// What an entry of the store stands for, across comparisons.
struct Origin
{
    bool isRemoved;
    quint64 tag; // of the original
    friend bool operator==(const Origin &, const Origin &) = default;
    friend size_t qHash(const Origin &origin, size_t seed)
    {
        return qHashMulti(seed, origin.isRemoved, origin.tag);
    }
};

Origin originOf(const EntryDifference &difference)
{
    return {!difference.after, difference.entry().entryTag()};
}

RegistryState stateOf(DifferenceKind kind)
{
    return kind == DifferenceKind::Added     ? RegistryStateNew
           : kind == DifferenceKind::Removed ? RegistryStateTerminated
                                             : RegistryStateUnchanged;
}
} // namespace

ComparisonStore::ComparisonStore(std::shared_ptr<const Compared> compared)
    : compared_(std::move(compared))
{
    makeEntries();
}

void ComparisonStore::show(std::shared_ptr<const Compared> compared)
{
    QHash<Origin, EntryRef> earlier;
    for (std::size_t i = 0; i < entries_.size(); ++i)
        earlier.insert(originOf(comparison().differences()[i]), entries_[i]);
    const std::shared_ptr<const Compared> old = std::exchange(compared_, std::move(compared));
    entries_.clear();
    for (const EntryDifference &difference : comparison().differences())
        entries_.push_back(earlier.value(originOf(difference)));
    makeEntries();
    builder_.announceChange();
}

void ComparisonStore::makeEntries()
{
    const auto &differences = comparison().differences();
    builder_.takeMachineFacts(comparison().after(),
                              ComparedPlanes::of(comparison().before(), comparison().after()));
    entries_.resize(differences.size());
    for (EntryRef &entry : entries_) {
        if (!entry)
            entry = builder_.addEntry();
    }
    builder_.setEntries(entries_);
    places_.assign(entries_.size(), 0);
    QSet<quint64> tags;
    for (const EntryRef &entry : compared_->after->registryEntries())
        tags.insert(entry->entryTag());
    quint64 freeTag = firstFreeTag;
    for (std::size_t i = 0; i < entries_.size(); ++i) {
        places_[entries_[i]->number()] = static_cast<quint32>(i);
        const quint64 tag = differences[i].entry().entryTag();
        const bool isTaken = !differences[i].after && tags.contains(tag);
        fill(i, isTaken ? freeTag++ : tag);
    }
    for (std::size_t i = 0; i < entries_.size(); ++i)
        link(i);
    below_.clear();
}

void ComparisonStore::fill(std::size_t place, quint64 tag)
{
    const EntryDifference &difference = comparison().differences()[place];
    EntryRecord facts = StoreBuilder::factsWithoutLinks(difference.entry());
    facts.entryTag = tag;
    facts.registryState = stateOf(difference.kind);
    facts.dateTerminated = difference.after ? QDateTime() : comparison().after().lastUpdateDate();
    entries_[place]->restore(std::move(facts));
    StoreBuilder::copyProperties(difference.entry(), *entries_[place]);
}

void ComparisonStore::link(std::size_t place)
{
    const EntryDifference &difference = comparison().differences()[place];
    EntryRecord facts = StoreBuilder::factsWithoutLinks(*entries_[place]);
    facts.parentsInPlanes = parents(difference);
    facts.childrenInPlanes = children(difference);
    entries_[place]->restore(std::move(facts));
}

TavRegistryEntry *ComparisonStore::standIn(const TavRegistryEntry &original) const
{
    const EntryDifference *const difference = comparison().differenceOf(original);
    return difference ? entryOf(*difference).get() : nullptr;
}

PlaneMap<EntryList> ComparisonStore::parents(const EntryDifference &difference) const
{
    PlaneMap<EntryList> result;
    for (const auto &item : difference.entry().facts().parentsInPlanes) {
        for (const TavRegistryEntry *const parent : item.value.entries()) {
            if (TavRegistryEntry *const own = standIn(*parent))
                result[item.plane()].add(own);
        }
    }
    return result;
}

// Of a pair, also the children that were removed.
PlaneMap<EntryList> ComparisonStore::children(const EntryDifference &difference) const
{
    PlaneMap<EntryList> result;
    const auto addThose = [&](const TavRegistryEntry &parent, bool removedOnly) {
        for (const auto &item : parent.facts().childrenInPlanes) {
            const std::size_t before = result[item.plane()].entries().size();
            for (const TavRegistryEntry *const child : item.value.entries()) {
                const EntryDifference *const found = comparison().differenceOf(*child);
                if (found && (!removedOnly || !found->after))
                    result[item.plane()].add(entryOf(*found).get());
            }
            if (removedOnly && result[item.plane()].entries().size() > before)
                result[item.plane()].setOrder(TavRegistryEntry::sortedArrayForPlane(
                    result[item.plane()].entries(), item.plane()));
        }
    };
    addThose(difference.entry(), !difference.after);
    if (difference.before && difference.after)
        addThose(*difference.before, true);
    return result;
}

const EntryDifference &ComparisonStore::differenceOf(const TavRegistryEntry &entry) const
{
    static const EntryDifference none;
    return entry.dataStore() == store().get() ? comparison().differences()[places_[entry.number()]]
                                              : none;
}

const EntryRef &ComparisonStore::entryOf(const EntryDifference &difference) const
{
    return entries_[static_cast<std::size_t>(&difference - comparison().differences().data())];
}

PropertyDifferences ComparisonStore::propertyDifferences(const TavRegistryEntry &entry,
                                                         const PropertyClass &nodeClass) const
{
    const EntryDifference &difference = differenceOf(entry);
    PropertyRef tree = entry.copyOfProperties(nodeClass);
    if (!difference.before || !difference.after)
        return PropertyDifferences(std::move(tree));
    return {difference.before->copyOfProperties(nodeClass), std::move(tree),
            comparison().rulesFor(difference)};
}

quint64 ComparisonStore::differencesBelow(const TavRegistryEntry &entry, const QString &plane) const
{
    if (entry.dataStore() != store().get())
        return 0;
    auto counts = below_.find(plane);
    if (counts == below_.end())
        counts = below_.insert(plane, countBelow(plane));
    return (*counts)[entry.number()];
}

// A difference on several paths counts on each; never more than there are in all.
ComparisonStore::Counts ComparisonStore::countBelow(const QString &plane) const
{
    enum class Visit : quint8 { Not, Open, Done };
    const quint64 all = comparison().counts().differences();
    Counts counts(entries_.size(), 0);
    std::vector<Visit> visits(entries_.size(), Visit::Not);
    std::vector<const TavRegistryEntry *> pending;
    if (const TavRegistryEntry *const root = store()->registryRoot())
        pending.push_back(root);
    while (!pending.empty()) {
        const TavRegistryEntry &entry = *pending.back();
        Visit &visit = visits[entry.number()];
        const auto &children = entry.childrenInPlane(plane);
        if (visit == Visit::Not) {
            visit = Visit::Open;
            for (const TavRegistryEntry *const child : children) {
                if (visits[child->number()] == Visit::Not)
                    pending.push_back(child);
            }
            continue;
        }
        pending.pop_back();
        if (visit == Visit::Done)
            continue;
        visit = Visit::Done;
        quint64 &count = counts[entry.number()];
        for (const TavRegistryEntry *const child : children) {
            if (visits[child->number()] == Visit::Done) // else a ring
                count += counts[child->number()] +
                         (differenceOf(*child).kind != DifferenceKind::Same ? 1 : 0);
        }
        count = std::min(count, all);
    }
    return counts;
}
