// SPDX-License-Identifier: Apache-2.0
#include "store/filter/PropertyFinder.h"

namespace {
// Between separators, as in the text of an entry's keys.
QByteArray foldedKey(const QString &key)
{
    return PropertyText::separator + PropertyText::folded(key) + PropertyText::separator;
}
} // namespace

PropertyFinder::PropertyFinder(QStringList keys)
    : keys_(std::move(keys))
{
    for (const QString &key : keys_)
        foldedKeys_.append(foldedKey(key));
}

void PropertyFinder::noteKeys(const PropertyText &text)
{
    const QByteArrayView keys = text.keys();
    if (!text.isWhole()) {
        lastText_ = {};
        mayBePresent_ = true;
        isUnique_ = false;
        return;
    }
    if (!lastText_.isNull() && keys.data() == lastText_.data() && keys.size() == lastText_.size())
        return;
    lastText_ = keys;
    mayBePresent_ = std::all_of(foldedKeys_.begin(), foldedKeys_.end(),
                                [&](const QByteArray &key) { return keys.indexOf(key) >= 0; });
    const QByteArray &last = foldedKeys_.constLast();
    isUnique_ = keys.indexOf(last) == keys.lastIndexOf(last);
}

PropertyFinder::Values PropertyFinder::find(const RegistryValue &table)
{
    if (!mayBePresent_)
        return {};
    if (const RegistryValue *const value = isUnique_ ? valueAtPlace(table) : nullptr)
        return {value};
    Values found = PropertyLookup::find(table, keys_);
    place_.clear();
    if (isUnique_ && !found.isEmpty())
        findPlace(table, found.front(), place_);
    return found;
}

void PropertyFinder::prefetch(const RegistryValue &table, std::size_t steps) const
{
    if (!mayBePresent_ || place_.size() < steps)
        return;
    const RegistryValue *value = &table;
    for (const std::size_t index : std::span(place_).first(steps)) {
        if (index >= static_cast<std::size_t>(value->count()))
            return;
        value = value->type() == RegistryValue::Type::Dictionary ? &value->members()[index].value
                                                                 : &value->elements()[index];
    }
    value->prefetch(steps < place_.size() ? place_[steps] : 0);
}

// Null unless the keys on the way there end with the right ones.
const RegistryValue *PropertyFinder::valueAtPlace(const RegistryValue &table) const
{
    const RegistryValue *value = &table;
    QVarLengthArray<QStringView, 16> way;
    for (const std::size_t index : place_) {
        if (value->type() == RegistryValue::Type::Set ||
            index >= static_cast<std::size_t>(value->count()))
            return nullptr;
        if (value->type() == RegistryValue::Type::Dictionary) {
            const auto &[key, member] = value->members()[index];
            way.append({key.data(), key.size()});
            value = &member;
        } else {
            value = &value->elements()[index];
        }
    }
    const bool isRight = !place_.empty() && way.size() >= keys_.size() &&
                         std::equal(keys_.rbegin(), keys_.rend(), way.rbegin());
    return isRight ? value : nullptr;
}

bool PropertyFinder::findPlace(const RegistryValue &in, const RegistryValue *value,
                               std::vector<std::size_t> &place)
{
    const auto isAt = [&](std::size_t index, const RegistryValue &below) {
        place.push_back(index);
        if (&below == value || findPlace(below, value, place))
            return true;
        place.pop_back();
        return false;
    };
    for (std::size_t i = 0; i < in.members().size(); ++i) {
        if (isAt(i, in.members()[i].value))
            return true;
    }
    for (std::size_t i = 0; i < in.elements().size(); ++i) {
        if (isAt(i, in.elements()[i]))
            return true;
    }
    return false;
}
