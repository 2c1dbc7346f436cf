// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "store/filter/PropertyLookup.h"

// Finds the properties with certain keys in one entry after the other. Entries of one kind share
// the text of their keys, from which it knows whether there is such a property; where only one key
// is right, the property is likely at the same place as in the entry before.
class PropertyFinder
{
public:
    using Values = PropertyLookup::Values;

    explicit PropertyFinder(QStringList keys);

    void noteKeys(const PropertyText &text); // of the table to come
    Values find(const RegistryValue &table);
    bool mayBePresent() const { return mayBePresent_; }
    // Fetches from memory what the table has at so many steps on the way to the place of the last
    // value, if it is in memory up to there.
    void prefetch(const RegistryValue &table, std::size_t steps) const;

private:
    const RegistryValue *valueAtPlace(const RegistryValue &table) const;
    static bool findPlace(const RegistryValue &in, const RegistryValue *value,
                          std::vector<std::size_t> &place);

    QStringList keys_;
    QByteArrayList foldedKeys_;
    QByteArrayView lastText_; // of keys
    bool mayBePresent_ = false;
    bool isUnique_ = false;          // the last of the keys
    std::vector<std::size_t> place_; // of the last value: indexes of members and elements
};
