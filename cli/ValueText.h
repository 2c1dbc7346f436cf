// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QStringList>

class TavRegistryEntry;

// Values as lines of text: a collection has a line for each scalar in it.
namespace ValueText {
// The properties with these keys, one below the other, as the window shows them.
QStringList shownLines(const TavRegistryEntry &entry, const QStringList &keys);
} // namespace ValueText
