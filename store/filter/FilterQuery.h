// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "store/filter/FilterEvaluator.h"

// One evaluation of a filter expression for the entries of a store, each once: its answer is the
// same in every plane.
class FilterQuery
{
public:
    // The planes are of these entries, all of which have numbers below the limit.
    FilterQuery(const FilterExpression &expression, std::span<const EntryRef> entries,
                std::span<const EntryOrder> planes, std::size_t numberLimit);

    // What an evaluation needs to know of these entries.
    static std::shared_ptr<FilterContext> contextFor(const FilterExpression &expression,
                                                     std::span<const EntryRef> entries,
                                                     std::span<const EntryOrder> planes,
                                                     std::size_t numberLimit);

    // Evaluates the entries ahead of the walks. Copies share the answers, and may take different
    // entries at the same time.
    void prepare(std::span<const EntryRef> entries);
    // Stores the answers in the entries of the order, all of which are prepared.
    void run(const EntryOrder &order) const;
    // False when regular expressions took so long that some texts were not searched.
    bool isComplete() const { return !context_->budget.hasSkipped(); }

private:
    std::shared_ptr<FilterContext> context_;
    FilterEvaluator evaluator_;
    std::shared_ptr<std::vector<char>> answers_; // by number of the entry
};
