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

// Evaluating mostly waits for memory: this fetches what a later entry needs.
void FilterQuery::fetch(const TavRegistryEntry &next)
{
    __builtin_prefetch(&next);
    __builtin_prefetch(&next.table());
    __builtin_prefetch(&next.facts().inheritance);
}

void FilterQuery::prepare(std::span<const EntryRef> entries)
{
    for (std::size_t i = 0; i < entries.size(); ++i) {
        if (i + 4 < entries.size())
            fetch(*entries[i + 4]);
        TavRegistryEntry &entry = *entries[i];
        entry.resetForQuery();
        (*answers_)[entry.number()] = evaluator_.matches(entry);
    }
}

void FilterQuery::run(const EntryOrder &order) const
{
    markMatches(order,
                [this](const TavRegistryEntry &entry) { return (*answers_)[entry.number()] != 0; });
}
