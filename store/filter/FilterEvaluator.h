// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "store/filter/EntriesUnder.h"
#include "store/filter/FilterExpression.h"
#include "store/filter/FilterNode.h"
#include "store/filter/PropertyLookup.h"

// What the threads of one evaluation share.
struct FilterContext
{
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

private:
    using Relation = FilterTest::Relation;
    using Values = PropertyLookup::Values;

    bool matches(const FilterNode &node) const;
    bool matches(const FilterTest &test) const;
    bool compares(const FilterTest &test) const;
    bool comparesWithProperty(const FilterTest &test, const Values &others) const;
    bool anyScalar(const FilterField &field,
                   const std::function<bool(const RegistryValue &)> &predicate) const;
    bool exists(const FilterField &field) const;
    bool isTrue(const FilterField &field) const;
    Values find(const FilterField &field) const;
    void notePresentKeys(const PropertyText &text);

    std::shared_ptr<FilterContext> context_;
    std::vector<QByteArrayList> foldedKeys_; // of each property of the expression
    std::vector<bool> mayBePresent_;         // by number of the property
    QByteArrayView lastKeys_;                // of which that is known
    const TavRegistryEntry *entry_ = nullptr;
    const RegistryValue *table_ = nullptr; // of the entry
};
