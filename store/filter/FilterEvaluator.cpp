// SPDX-License-Identifier: Apache-2.0
#include "store/filter/FilterEvaluator.h"

#include "store/filter/FilterFields.h"

namespace {
using Relation = FilterTest::Relation;

bool holds(Relation relation, const FilterValue &a, const FilterValue &b)
{
    if (relation == Relation::Equal || relation == Relation::Unequal || relation == Relation::In)
        return FilterValue::areEqual(a, b);
    const auto order = FilterValue::compare(a, b);
    if (!order)
        return false;
    switch (relation) {
    case Relation::Less:
        return *order < 0;
    case Relation::LessOrEqual:
        return *order <= 0;
    case Relation::Greater:
        return *order > 0;
    default:
        return *order >= 0;
    }
}
} // namespace

FilterEvaluator::FilterEvaluator(std::shared_ptr<FilterContext> context)
    : context_(std::move(context))
{
    for (const QStringList &keys : context_->expression.properties())
        finders_.emplace_back(keys);
}

bool FilterEvaluator::matches(const TavRegistryEntry &entry)
{
    RegistryValue made;
    entry_ = &entry;
    table_ = &made;
    if (!finders_.empty())
        table_ = &PropertyLookup::tableOf(entry, made);
    for (PropertyFinder &finder : finders_)
        finder.noteKeys(entry.propertyText());
    return matches(context_->expression.root());
}

// No deeper than the parser allows.
bool FilterEvaluator::matches(const FilterNode &node)
{
    const auto matchesPart = [this](const FilterNode &part) { return matches(part); };
    switch (node.kind) {
    case FilterNode::Kind::And:
        return std::all_of(node.parts.begin(), node.parts.end(), matchesPart);
    case FilterNode::Kind::Or:
        return std::any_of(node.parts.begin(), node.parts.end(), matchesPart);
    case FilterNode::Kind::Not:
        return !matches(node.parts.front());
    case FilterNode::Kind::Test:
        break;
    }
    return matches(node.test);
}

bool FilterEvaluator::matches(const FilterTest &test)
{
    switch (test.relation) {
    case Relation::IsTrue:
        return isTrue(test.field);
    case Relation::Exists:
        return exists(test.field);
    case Relation::Under:
        return context_->entriesUnder[test.ancestorNumber].contains(*entry_);
    case Relation::Contains:
        return anyScalar(test.field, [&](const RegistryValue &scalar) {
            return FilterValue::anyText(
                scalar, [&](QStringView text) { return test.matcher.indexIn(text) >= 0; });
        });
    case Relation::Matches:
        return anyScalar(test.field, [&](const RegistryValue &scalar) {
            return FilterValue::anyText(scalar, [&](QStringView text) {
                return test.pattern.matches(text, context_->budget);
            });
        });
    case Relation::Unequal: // of two values that are there
        return exists(test.field) && (!test.values.empty() || exists(*test.otherField)) &&
               !compares(test);
    default:
        return compares(test);
    }
}

bool FilterEvaluator::compares(const FilterTest &test)
{
    if (test.otherField) {
        const Values others = find(*test.otherField);
        if (!others.isEmpty())
            return comparesWithProperty(test, others);
    }
    return anyScalar(test.field, [&](const RegistryValue &scalar) {
        const FilterValue value(scalar);
        return std::any_of(test.values.begin(), test.values.end(), [&](const FilterValue &other) {
            return holds(test.relation, value, other);
        });
    });
}

bool FilterEvaluator::comparesWithProperty(const FilterTest &test, const Values &others)
{
    return anyScalar(test.field, [&](const RegistryValue &scalar) {
        const FilterValue value(scalar);
        return std::any_of(others.begin(), others.end(), [&](const RegistryValue *other) {
            return FilterValue::anyScalar(*other, [&](const RegistryValue &otherScalar) {
                return holds(test.relation, value, FilterValue(otherScalar));
            });
        });
    });
}

bool FilterEvaluator::anyScalar(const FilterField &field,
                                const std::function<bool(const RegistryValue &)> &predicate)
{
    if (field.kind != FilterField::Kind::Property)
        return FilterFields::any(*entry_, field.kind, predicate);
    const Values found = find(field);
    return std::any_of(found.begin(), found.end(), [&](const RegistryValue *value) {
        return FilterValue::anyScalar(*value, predicate);
    });
}

bool FilterEvaluator::exists(const FilterField &field)
{
    if (field.kind == FilterField::Kind::Property)
        return !find(field).isEmpty();
    return FilterFields::any(*entry_, field.kind, [](const RegistryValue &) { return true; });
}

bool FilterEvaluator::isTrue(const FilterField &field)
{
    if (field.kind != FilterField::Kind::Property)
        return exists(field);
    const Values found = find(field);
    return std::any_of(found.begin(), found.end(), [](const RegistryValue *value) {
        return value->type() != RegistryValue::Type::Boolean || value->toBoolean();
    });
}

FilterEvaluator::Values FilterEvaluator::find(const FilterField &field)
{
    return finders_[field.number].find(*table_);
}

void FilterEvaluator::prefetch(const TavRegistryEntry &entry, std::size_t level) const
{
    for (const PropertyFinder &finder : finders_)
        finder.prefetch(entry.table(), level);
}
