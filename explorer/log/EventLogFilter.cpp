// SPDX-License-Identifier: Apache-2.0
#include "explorer/log/EventLogFilter.h"

#include "store/TavDataStore.h"

namespace {
// What the row knows, as an entry of its own.
EntryRef standIn(const LogRow &row)
{
    EntryRecord facts;
    facts.entryTag = row.entryTag;
    facts.name = row.name.section(u'@', 0, 0);
    facts.location = row.name.section(u'@', 1);
    facts.inheritance = row.inheritance;
    facts.kernelPath = CompactString(row.event.kernelPath);
    RegistryValue::Members members;
    const auto add = [&](const QString &key, const QString &text) {
        members.push_back({CompactString(key), RegistryValue::string(text)});
    };
    if (!row.driver.isEmpty())
        add(QStringLiteral("driver"), row.driver);
    if (!row.event.subsystem.isEmpty())
        add(QStringLiteral("subsystem"), row.event.subsystem);
    for (const LogChange &change : row.changes) {
        if (!change.after.isNull())
            add(change.key, change.after);
    }
    EntryRef entry = TavRegistryEntry::createEmpty();
    entry->restore(std::move(facts));
    entry->setTable(RegistryValue::dictionary(std::move(members)), {});
    return entry;
}
} // namespace

EventLogFilter::EventLogFilter(std::shared_ptr<TavDataStore> store)
    : store_(std::move(store))
{}

void EventLogFilter::set(std::optional<FilterExpression> expression)
{
    expression_ = std::move(expression);
    readStore();
}

void EventLogFilter::refresh()
{
    if (expression_ &&
        asOf_ != std::pair(store_->lastUpdateDate(), store_->registryEntries().size()))
        readStore();
}

void EventLogFilter::readStore()
{
    asOf_ = {store_->lastUpdateDate(), store_->registryEntries().size()};
    answers_.clear();
    entries_.clear();
    test_ = nullptr;
    if (!expression_)
        return;
    test_ = store_->testFor(*expression_);
    for (const EntryRef &entry : store_->registryEntries())
        entries_.insert(entry->entryTag(), entry.get());
}

bool EventLogFilter::passes(const LogRow &row)
{
    return !expression_ || row.event.kind == RegistryEvent::Kind::Lost || matches(row);
}

bool EventLogFilter::matches(const LogRow &row)
{
    if (row.name.isEmpty()) // of the whole registry
        return false;
    const TavRegistryEntry *const entry = entries_.value(row.entryTag);
    if (!entry)
        return test_(*standIn(row));
    const auto known = answers_.constFind(row.entryTag);
    if (known != answers_.constEnd())
        return *known;
    const bool answer = test_(*entry);
    answers_.insert(row.entryTag, answer);
    return answer;
}
