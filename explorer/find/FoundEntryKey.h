// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/RegistryValue.h"

// What a result is sorted by: nothing, then booleans and numbers by value, then texts in natural
// order, then the rest.
class FoundEntryKey
{
public:
    FoundEntryKey() = default;
    explicit FoundEntryKey(const QString &text)
        : value_(RegistryValue::string(text))
    {}
    explicit FoundEntryKey(RegistryValue value)
        : value_(std::move(value))
    {}

    friend bool operator<(const FoundEntryKey &a, const FoundEntryKey &b);

private:
    RegistryValue value_;
};
