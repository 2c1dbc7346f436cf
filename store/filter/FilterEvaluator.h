// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "store/filter/EntriesUnder.h"
#include "store/filter/FilterExpression.h"
#include "store/filter/FilterNode.h"
#include "store/filter/PropertyFinder.h"

// What the threads of one evaluation share.
struct FilterContext
{
    FilterContext(FilterExpression filter, std::vector<EntriesUnder> under)
        : expression(std::move(filter))
        , entriesUnder(std::move(under))
    {}

    FilterExpression expression;
    std::vector<EntriesUnder> entriesUnder; // by number of the ancestor in the expression
    FilterBudget budget = {};
};

// Evaluates a filter expression for one entry after the other. Reads the tables of values only. Use
// one for each thread.
class FilterEvaluator
{
public:
    explicit FilterEvaluator(std::shared_ptr<FilterContext> context);

    bool matches(const TavRegistryEntry &entry);
    // Fetches from memory what an entry to come is likely to be asked for, one level of its table
    // after the other: most entries are like the one before.
    void prefetch(const TavRegistryEntry &entry, std::size_t level) const;

private:
    using Relation = FilterTest::Relation;
    using Values = PropertyLookup::Values;

    bool matches(const FilterNode &node);
    bool matches(const FilterTest &test);
    bool compares(const FilterTest &test);
    bool comparesWithProperty(const FilterTest &test, const Values &others);
    bool anyScalar(const FilterField &field,
                   const std::function<bool(const RegistryValue &)> &predicate);
    bool exists(const FilterField &field);
    bool isTrue(const FilterField &field);
    Values find(const FilterField &field);

    std::shared_ptr<FilterContext> context_;
    std::vector<PropertyFinder> finders_; // of the properties of the expression
    const TavRegistryEntry *entry_ = nullptr;
    const RegistryValue *table_ = nullptr; // of the entry
};
