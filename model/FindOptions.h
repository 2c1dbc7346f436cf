// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QFlags>

// What a search looks at. No option means all of them but the shown values.
enum class FindOption {
    Name = 1,
    Class = 2,
    Inheritance = 4,
    BundleID = 8,
    Keys = 16,
    Values = 32,
    KeyValue = 64, // Deliberate: stored and shown, but without effect
    Special = 128,
    ShownValues = 256, // other values than strings, by the text that they are shown as
};
Q_DECLARE_FLAGS(FindOptions, FindOption)
Q_DECLARE_OPERATORS_FOR_FLAGS(FindOptions)
