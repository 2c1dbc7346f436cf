// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QColor>

// The colours of new, terminated and changed entries, of their parents, and of those that a search
// does not match. Text colours are adapted to their background.
namespace EntryColors {
QColor colorForTerminatedItem();
QColor colorForParentOfTerminatedItem();
QColor colorForNonmatchingTerminatedItem();
QColor colorForNewItem();
QColor colorForParentOfNewItem();
QColor colorForNonmatchingNewItem();
QColor colorForChangedItem(); // in a comparison
} // namespace EntryColors
