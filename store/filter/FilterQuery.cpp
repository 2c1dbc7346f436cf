// SPDX-License-Identifier: Apache-2.0
#include "store/filter/FilterQuery.h"

#include "model/MatchMarks.h"

namespace {
void prefetch(const TavRegistryEntry &entry)
{
    __builtin_prefetch(&entry);
    __builtin_prefetch(&entry.table());
    __builtin_prefetch(&entry.facts().inheritance);
}
} // namespace

std::shared_ptr<FilterContext> FilterQuery::contextFor(const FilterExpression &expression,
                                                       std::span<const EntryRef> entries,
                                                       std::span<const EntryOrder> planes,
                                                       std::size_t numberLimit)
{
    std::vector<EntriesUnder> entriesUnder;
    for (const QString &name : expression.ancestors())
        entriesUnder.emplace_back(name, entries, planes, numberLimit);
    return std::make_shared<FilterContext>(expression, std::move(entriesUnder));
}

FilterQuery::FilterQuery(const FilterExpression &expression, std::span<const EntryRef> entries,
                         std::span<const EntryOrder> planes, std::size_t numberLimit)
    : context_(contextFor(expression, entries, planes, numberLimit))
    , evaluator_(context_)
    , answers_(std::make_shared<std::vector<char>>(numberLimit))
{}

void FilterQuery::prepare(std::span<const EntryRef> entries)
{
    // Evaluating mostly waits for memory.
    constexpr std::size_t levels = 3;
    constexpr std::size_t distance = 2;
    for (std::size_t i = 0; i < entries.size(); ++i) {
        if (const std::size_t ahead = i + (levels + 1) * distance; ahead < entries.size())
            prefetch(*entries[ahead]);
        for (std::size_t level = 0; level < levels; ++level) {
            if (const std::size_t ahead = i + (levels - level) * distance; ahead < entries.size())
                evaluator_.prefetch(*entries[ahead], level);
        }
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
