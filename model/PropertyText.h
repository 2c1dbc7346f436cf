// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/RegistryValue.h"

#include <functional>

class TavRegistryProperty;

// All keys and strings of one property tree in one buffer, case-folded: searching it is many times
// faster than walking the tree. Leaves out the contents of sets, and texts that would make it large
// for the number of nodes (many nodes may share one long text): those must be searched in the tree.
// The numbers, booleans, dates and data of the tree are in one list, too.
class PropertyText
{
public:
    // Before and after each text. Not a byte of UTF-8.
    static constexpr char separator = '\xff';

    PropertyText() = default; // not made yet
    explicit PropertyText(const TavRegistryProperty &table);
    explicit PropertyText(const RegistryValue &table); // of the tree that would be built from it

    bool isMade() const { return keys_.size() > 0; }
    QByteArrayView keys() const { return {keys_.data(), keys_.size()}; }
    QByteArrayView strings() const { return {strings_.data(), strings_.size()}; }
    // First data that ends in a NUL byte, as text does; other data last. Equal booleans once.
    std::span<const RegistryValue> values() const { return values_; }
    bool isWhole() const { return isWhole_; } // false: some texts are only in the tree

    // Whether any key or string that a search checks satisfies the predicate.
    using Predicate = std::function<bool(QStringView)>;
    static bool anyKey(const TavRegistryProperty &table, const Predicate &predicate);
    static bool anyString(const TavRegistryProperty &table, const Predicate &predicate);

    // UTF-8, each character folded separately; an unpaired surrogate is kept.
    static QByteArray folded(QStringView text);

private:
    class Builder;

    CompactBytes keys_; // shared by trees with the same keys
    [[no_unique_address]] CompactBytes strings_;
    std::vector<RegistryValue> values_;
    bool isWhole_ = true;
};
