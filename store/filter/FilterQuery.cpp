// SPDX-License-Identifier: Apache-2.0
#include "store/filter/FilterQuery.h"

#include "model/MatchMarks.h"

namespace {
std::shared_ptr<FilterContext> contextOf(const FilterExpression &expression,
                                         std::span<const EntryOrder> planes,
                                         std::size_t numberLimit)
{
    std::vector<EntriesUnder> entriesUnder;
    for (const QString &name : expression.ancestors())
        entriesUnder.emplace_back(name, planes, numberLimit);
    return std::make_shared<FilterContext>(expression, std::move(entriesUnder));
}
} // namespace

FilterQuery::FilterQuery(const FilterExpression &expression, std::span<const EntryOrder> planes,
                         std::size_t numberLimit)
    : context_(contextOf(expression, planes, numberLimit))
    , evaluator_(context_)
    , answers_(std::make_shared<std::vector<char>>(numberLimit))
{}

// Evaluating mostly waits for memory: these fetch what the next few entries need, one level after
// the other.
void FilterQuery::fetch(const TavRegistryEntry &next)
{
    __builtin_prefetch(&next);
    __builtin_prefetch(&next.table());
    __builtin_prefetch(&next.facts().inheritance);
}

void FilterQuery::fetchMembers(const RegistryValue &table)
{
    constexpr std::size_t lineSize = 64;
    constexpr std::size_t maxSize = 8 * lineSize;
    const std::span bytes = std::as_bytes(table.members());
    for (std::size_t at = 0; at < std::min(bytes.size(), maxSize); at += lineSize)
        __builtin_prefetch(bytes.data() + at);
}

void FilterQuery::fetchGroups(const RegistryValue &table)
{
    for (const auto &[key, value] : table.members()) {
        if (value.type() == RegistryValue::Type::Dictionary)
            fetchMembers(value);
    }
}

void FilterQuery::prepare(std::span<const EntryRef> entries)
{
    for (std::size_t i = 0; i < entries.size(); ++i) {
        if (i + 8 < entries.size())
            fetch(*entries[i + 8]);
        // Most entries are like the one before.
        if (evaluator_.depth() >= FilterEvaluator::Depth::Members && i + 4 < entries.size())
            fetchMembers(entries[i + 4]->table());
        if (evaluator_.depth() == FilterEvaluator::Depth::Groups && i + 2 < entries.size())
            fetchGroups(entries[i + 2]->table());
        TavRegistryEntry &entry = *entries[i];
        entry.resetForQuery();
        (*answers_)[entry.number()] = evaluator_.matches(entry) ? 1 : 0;
    }
}

void FilterQuery::run(const EntryOrder &order) const
{
    markMatches(order,
                [this](const TavRegistryEntry &entry) { return (*answers_)[entry.number()] != 0; });
}
