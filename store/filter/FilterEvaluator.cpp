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

// Between separators, as in the text of an entry's keys.
QByteArray foldedKey(const QString &key)
{
    return PropertyText::separator + PropertyText::folded(key) + PropertyText::separator;
}
} // namespace

FilterEvaluator::FilterEvaluator(std::shared_ptr<FilterContext> context)
    : context_(std::move(context))
{
    for (const QStringList &keys : context_->expression.properties()) {
        QByteArrayList &folded = foldedKeys_.emplace_back();
        for (const QString &key : keys)
            folded.append(foldedKey(key));
    }
    mayBePresent_.resize(foldedKeys_.size());
}

bool FilterEvaluator::matches(const TavRegistryEntry &entry)
{
    RegistryValue made;
    entry_ = &entry;
    table_ = &made;
    if (!foldedKeys_.empty()) {
        notePresentKeys(entry.propertyText());
        table_ = &PropertyLookup::tableOf(entry, made);
    }
    return matches(context_->expression.root());
}

// Cached: entries of one kind share their keys.
void FilterEvaluator::notePresentKeys(const PropertyText &text)
{
    const QByteArrayView keys = text.isWhole() ? text.keys() : QByteArrayView();
    if (keys.data() == lastKeys_.data() && keys.size() == lastKeys_.size() && !keys.isEmpty())
        return;
    lastKeys_ = keys;
    for (std::size_t i = 0; i < foldedKeys_.size(); ++i)
        mayBePresent_[i] =
            !text.isWhole() ||
            std::all_of(foldedKeys_[i].begin(), foldedKeys_[i].end(),
                        [&](const QByteArray &key) { return keys.indexOf(key) >= 0; });
}

// No deeper than the parser allows.
bool FilterEvaluator::matches(const FilterNode &node) const
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

bool FilterEvaluator::matches(const FilterTest &test) const
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

bool FilterEvaluator::compares(const FilterTest &test) const
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

bool FilterEvaluator::comparesWithProperty(const FilterTest &test, const Values &others) const
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
                                const std::function<bool(const RegistryValue &)> &predicate) const
{
    if (field.kind != FilterField::Kind::Property)
        return FilterFields::any(*entry_, field.kind, predicate);
    const Values found = find(field);
    return std::any_of(found.begin(), found.end(), [&](const RegistryValue *value) {
        return FilterValue::anyScalar(*value, predicate);
    });
}

bool FilterEvaluator::exists(const FilterField &field) const
{
    if (field.kind == FilterField::Kind::Property)
        return !find(field).isEmpty();
    return FilterFields::any(*entry_, field.kind, [](const RegistryValue &) { return true; });
}

bool FilterEvaluator::isTrue(const FilterField &field) const
{
    if (field.kind != FilterField::Kind::Property)
        return exists(field);
    const Values found = find(field);
    return std::any_of(found.begin(), found.end(), [](const RegistryValue *value) {
        return value->type() != RegistryValue::Type::Boolean || value->toBoolean();
    });
}

PropertyLookup::Values FilterEvaluator::find(const FilterField &field) const
{
    return mayBePresent_[field.number] ? PropertyLookup::find(*table_, field.keys) : Values();
}
