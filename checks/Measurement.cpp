// SPDX-License-Identifier: Apache-2.0
#include "checks/Measurement.h"

#include "checks/CheckList.h"
#include "model/RegistryService.h"
#include "model/UpdatedTable.h"

#include <QPointer>
#include <QTimer>

namespace {
constexpr int maxPending = 8; // readings side by side

// What checks measure in the entries of a subsystem.
struct Measured
{
    bool onRequest = false;
    QStringList counters = {};
};

const QHash<QString, Measured> &measuredSubsystems()
{
    static const auto subsystems = [] {
        QHash<QString, Measured> found;
        for (const auto &check : CheckList::all()) {
            const CheckDescription its = check->description();
            for (const QString &subsystem : its.subsystems) {
                if (!its.needsMeasuring)
                    continue;
                found[subsystem].onRequest |= its.counters.isEmpty();
                found[subsystem].counters += its.counters;
            }
        }
        return found;
    }();
    return subsystems;
}

QStringView keyOf(const RegistryValue::Member &member)
{
    return {member.key.data(), member.key.size()};
}

// The table with the members whose keys it does not have.
RegistryValue withAdded(const RegistryValue &table, const RegistryValue::Members &added)
{
    RegistryValue::Members members(table.members().begin(), table.members().end());
    std::copy_if(added.begin(), added.end(), std::back_inserter(members),
                 [&](const auto &member) { return table.member(keyOf(member)).isNone(); });
    return members.size() == table.members().size() ? table
                                                    : RegistryValue::dictionary(std::move(members));
}
} // namespace

Measurement::Tables Measurement::Tables::over(const RegistryValue &table) const
{
    if (base.isNone())
        return {table, table, {}};
    if (table.isSameCollectionAs(base))
        return *this;
    RegistryValue::Members onRequest;
    for (const auto &member : now.members()) {
        if (base.member(keyOf(member)).isNone())
            onRequest.push_back(member);
    }
    return {table, withAdded(table, onRequest), {}};
}

Measurement::Measurement(RegistryService &service, const std::vector<EntryRef> &entries,
                         int milliseconds)
    : service_(service)
    , milliseconds_(milliseconds)
{
    for (const EntryRef &entry : entries)
        addItem(*entry);
}

void Measurement::addItem(const TavRegistryEntry &entry)
{
    const RegistryValue &table = entry.table();
    const QString link = table.member(u"subsystem").toString();
    const auto measured = measuredSubsystems().constFind(link.mid(link.lastIndexOf(u'/') + 1));
    if (measured == measuredSubsystems().constEnd() || entry.kernelPath().isEmpty() ||
        entry.hasTerminationDate())
        return;
    ObjectSample::Request request{.kernelPath = entry.kernelPath(),
                                  .attributes = measured->counters};
    if (measured->onRequest) {
        for (const auto &member : table.member(u"DxUnreadAttributes").members())
            request.onRequest.append(member.key.toOwner());
    }
    tables_.insert(entry.entryTag(), {table, table, {}});
    items_.push_back({entry.entryTag(), std::move(request), !measured->counters.isEmpty()});
}

void Measurement::start()
{
    QTimer::singleShot(0, this, &Measurement::readSome);
}

void Measurement::readSome()
{
    while (next_ < items_.size() && pending_ < maxPending) {
        const Item &item = items_[next_++];
        if (isSecondRound_ && !item.isCounted)
            continue;
        ++pending_;
        service_.sample(item.request, [self = QPointer(this), &item](const ObjectSample &sample) {
            if (self)
                self->take(item, sample);
        });
    }
    if (pending_ == 0)
        endRound();
}

void Measurement::take(const Item &item, const ObjectSample &sample)
{
    Tables &tables = tables_[item.tag];
    if (isSecondRound_)
        tables.earlier = tables.now;
    tables.now = withAdded(updatedTable(tables.now, sample.members), sample.members);
    --pending_;
    readSome();
}

void Measurement::endRound()
{
    const bool areSomeCounted =
        std::any_of(items_.begin(), items_.end(), [](const Item &item) { return item.isCounted; });
    if (isSecondRound_ || !areSomeCounted)
        return Q_EMIT finished();
    isSecondRound_ = true;
    next_ = 0;
    QTimer::singleShot(milliseconds_, this, &Measurement::readSome);
}
