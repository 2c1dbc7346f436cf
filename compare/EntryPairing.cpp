// SPDX-License-Identifier: Apache-2.0
#include "compare/EntryPairing.h"

#include "compare/ComparedPlanes.h"
#include "compare/EntryIdentity.h"
#include "compare/VolatileAttributes.h"
#include "store/TavDataStore.h"

namespace {
const QString hostClass = QStringLiteral("DxHost");

QString bootID(const TavDataStore &store)
{
    const TavRegistryEntry *const root = store.registryRoot();
    return root ? EntryIdentity::propertyText(*root, u"DxBootID") : QString();
}
} // namespace

EntryPairing::EntryPairing(const TavDataStore &before, const TavDataStore &after,
                           const VolatileAttributes &volatileAttributes)
    : before_(before)
    , after_(after)
    , volatileAttributes_(volatileAttributes)
    , planes_(ComparedPlanes::of(before, after))
    , nextByPath_(static_cast<std::size_t>(planes_.size()), 0)
    , maxPairs_(std::min(countPresent(before), countPresent(after)))
    , inAfter_(before.entryNumberLimit(), nullptr)
    , inBefore_(after.entryNumberLimit(), nullptr)
{
    if (before.registryRoot() && after.registryRoot())
        pair(*before.registryRoot(), *after.registryRoot());
    pairByID();
    pairByPath();
    pairByIdentity();
    pairSimilar();
}

std::size_t EntryPairing::countPresent(const TavDataStore &store)
{
    const auto &entries = store.registryEntries();
    return static_cast<std::size_t>(std::count_if(
        entries.begin(), entries.end(), [](const EntryRef &entry) { return isPresent(*entry); }));
}

bool EntryPairing::isPresent(const TavRegistryEntry &entry)
{
    return entry.registryState() != RegistryStateTerminated && !entry.hasTerminationDate();
}

void EntryPairing::pair(TavRegistryEntry &before, TavRegistryEntry &after)
{
    pairs_.push_back({&before, &after});
    inAfter_[before.number()] = &after;
    inBefore_[after.number()] = &before;
}

template<class Entries>
EntryList::Entries EntryPairing::unpaired(const Entries &entries, const Partners &partners)
{
    EntryList::Entries found;
    for (const auto &entry : entries) {
        if (!partners[entry->number()] && isPresent(*entry))
            found.push_back(&*entry);
    }
    return found;
}

// Only within one boot: IDs are given out again by the next one.
void EntryPairing::pairByID()
{
    const QString boot = bootID(before_);
    if (boot.isEmpty() || boot != bootID(after_))
        return;
    pairMatching(unpaired(before_.registryEntries(), inAfter_),
                 unpaired(after_.registryEntries(), inBefore_),
                 [](const auto &entry) { return QString::number(entry.entryTag()); });
}

// The service plane again after each other plane that found a pair.
void EntryPairing::pairByPath()
{
    for (qsizetype i = 0; i < planes_.size() && !isComplete();) {
        const QString &plane = planes_.at(i);
        // A path does not name the machine.
        const auto name = [&plane](const TavRegistryEntry &entry) {
            return entry.DxcoreClass() == hostClass ? hostClass
                                                    : entry.nameAtLocationInPlane(plane);
        };
        const bool anyFound = pairChildren(plane, nextByPath_[static_cast<std::size_t>(i)], name);
        i = anyFound && i > 0 ? 0 : i + 1;
    }
}

// Pairs the children of all pairs from the next one on, also of those that are found meanwhile.
bool EntryPairing::pairChildren(const QString &plane, std::size_t &next, const Key &key)
{
    const std::size_t before = pairs_.size();
    for (; next < pairs_.size(); ++next) {
        const auto [older, newer] = pairs_[next];
        const auto children = unpaired(older->childrenInPlane(plane), inAfter_);
        if (!children.empty())
            pairMatching(children, unpaired(newer->childrenInPlane(plane), inBefore_), key);
    }
    return pairs_.size() > before;
}

void EntryPairing::pairMatching(const EntryList::Entries &before, const EntryList::Entries &after,
                                const Key &key)
{
    const std::size_t equal = pairEqualStart(before, after, key);
    if (equal == before.size() || equal == after.size())
        return;
    const auto start = static_cast<std::ptrdiff_t>(equal);
    Queues waiting; // the first one last
    for (auto entry = before.rbegin(); entry != before.rend() - start; ++entry) {
        if (const QString text = key(**entry); !text.isEmpty())
            waiting[text].push_back(*entry);
    }
    if (waiting.isEmpty())
        return;
    for (TavRegistryEntry *const entry : std::span(after).subspan(equal)) {
        const QString text = key(*entry);
        const auto found = text.isEmpty() ? waiting.end() : waiting.find(text);
        if (found == waiting.end() || found->empty())
            continue;
        pair(*found->back(), *entry);
        found->pop_back();
    }
}

// Nearly all lists are the same, and need no index. Returns how many entries were paired.
std::size_t EntryPairing::pairEqualStart(const EntryList::Entries &before,
                                         const EntryList::Entries &after, const Key &key)
{
    const std::size_t shorter = std::min(before.size(), after.size());
    for (std::size_t i = 0; i < shorter; ++i) {
        const QString text = key(*before[i]);
        if (text.isEmpty() || text != key(*after[i]))
            return i;
        pair(*before[i], *after[i]);
    }
    return shorter;
}

void EntryPairing::pairByIdentity()
{
    for (const EntryIdentity::Kind kind : EntryIdentity::kinds) {
        if (isComplete())
            return;
        pairMatching(
            unpaired(before_.registryEntries(), inAfter_),
            unpaired(after_.registryEntries(), inBefore_),
            [kind](const TavRegistryEntry &entry) { return EntryIdentity::textOf(entry, kind); });
        pairByPath();
    }
}

// Exchangeable devices under one parent, such as a keyboard that got another number.
void EntryPairing::pairSimilar()
{
    const auto likeness = [this](const TavRegistryEntry &entry) {
        return EntryIdentity::likeness(entry, volatileAttributes_);
    };
    while (!isComplete() && pairChildren(ComparedPlanes::service, nextSimilar_, likeness))
        pairByPath();
}
