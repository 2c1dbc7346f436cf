#pragma once

#include <QFlags>

// What a search looks at. No option at all means every one.
enum class FindOption {
    Name = 1,
    Class = 2,
    Inheritance = 4,
    BundleID = 8,
    Keys = 16,
    Values = 32,
    KeyValue = 64, // kept and shown, but looks at nothing
    Special = 128,
};
Q_DECLARE_FLAGS(FindOptions, FindOption)
Q_DECLARE_OPERATORS_FOR_FLAGS(FindOptions)
