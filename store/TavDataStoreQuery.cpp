// SPDX-License-Identifier: Apache-2.0
// The search operation of TavDataStore.
#include "model/EntryQuery.h"
#include "store/TavDataStore.h"
#include "store/filter/FilterQuery.h"

#include <QFutureSynchronizer>
#include <QtConcurrentMap>

namespace {
using Entries = std::span<const EntryRef>;

// Not too many parts, since each has its own cache of shared texts.
std::vector<Entries> partsOf(Entries entries)
{
    const std::size_t partSize = std::max<std::size_t>(2048, entries.size() / 64);
    std::vector<Entries> parts;
    for (std::size_t start = 0; start < entries.size(); start += partSize)
        parts.push_back(entries.subspan(start, std::min(partSize, entries.size() - start)));
    return parts;
}
} // namespace

// Cached: while the user types, a query follows for each letter.
const std::vector<EntryOrder> &TavDataStore::planeOrders()
{
    TavRegistryEntry *const root = registryRoot();
    const auto isOf = [&](const EntryOrder &order, const QString &plane) {
        return &order.top() == root && order.plane() == plane;
    };
    if (ordersAsOf_ == EntryList::changes() &&
        std::equal(planeOrders_.begin(), planeOrders_.end(), registryPlanes_.begin(),
                   registryPlanes_.end(), isOf))
        return planeOrders_;
    planeOrders_.clear();
    if (root) {
        for (const QString &plane : registryPlanes_)
            planeOrders_.emplace_back(*root, plane);
    }
    ordersAsOf_ = EntryList::changes();
    return planeOrders_;
}

void TavDataStore::runQuery(const QString &query, FindOptions options, EntrySet *matches,
                            QHash<QString, EntrySet> *parentsOfMatches,
                            const ShownValueTest &shownValues)
{
    // The inheritance includes the entry's own class.
    if (options.testFlag(FindOption::Inheritance))
        options.setFlag(FindOption::Class, false);
    EntryQuery search(query, options, entryNumberLimit(), shownValues);
    std::vector<Entries> parts = partsOf(registryEntries_);
    // Each part has a copy of the search, whose caches serve one thread.
    const auto prepare = [&search](Entries part) { EntryQuery(search).prepare(part); };
    QFutureSynchronizer<void> preparing(QtConcurrent::map(parts, prepare));
    const std::vector<EntryOrder> &orders = planeOrders();
    preparing.waitForFinished();
    for (const EntryOrder &order : orders)
        search.run(order);
    collectMatches(matches, parentsOfMatches);
}

bool TavDataStore::runFilter(const FilterExpression &filter, EntrySet *matches,
                             QHash<QString, EntrySet> *parentsOfMatches)
{
    const std::vector<EntryOrder> &orders = planeOrders();
    const FilterQuery search(filter, registryEntries_, orders, entryNumberLimit());
    std::vector<Entries> parts = partsOf(registryEntries_);
    QtConcurrent::blockingMap(parts,
                              [&search](Entries part) { FilterQuery(search).prepare(part); });
    for (const EntryOrder &order : orders)
        search.run(order);
    collectMatches(matches, parentsOfMatches);
    return search.isComplete();
}

std::function<bool(const TavRegistryEntry &)> TavDataStore::testFor(const FilterExpression &filter)
{
    const auto context =
        FilterQuery::contextFor(filter, registryEntries_, planeOrders(), entryNumberLimit());
    return [evaluator = std::make_shared<FilterEvaluator>(context)](const TavRegistryEntry &entry) {
        return evaluator->matches(entry);
    };
}

void TavDataStore::collectMatches(EntrySet *matches,
                                  QHash<QString, EntrySet> *parentsOfMatches) const
{
    if (!matches && !parentsOfMatches)
        return;
    for (const EntryRef &entry : registryEntries_) {
        if (matches && entry->matchesLastQuery())
            matches->insert(entry.get());
    }
    if (!parentsOfMatches)
        return;
    // Plane by plane within an entry, while the entry is in the cache.
    std::vector<EntrySet> parents(static_cast<std::size_t>(registryPlanes_.size()));
    for (const EntryRef &entry : registryEntries_) {
        for (std::size_t i = 0; i < parents.size(); ++i) {
            if (entry->descendantMatchesLastQueryInPlane(registryPlanes_[static_cast<int>(i)]))
                parents[i].insert(entry.get());
        }
    }
    for (std::size_t i = 0; i < parents.size(); ++i)
        parentsOfMatches->insert(registryPlanes_[static_cast<int>(i)], parents[i]);
}
