#pragma once

#include <QColor>

// The colours of entries that came or went, of their parents, and of those that a search does not
// match. They stand out on light and on dark backgrounds alike.
namespace EntryColors {
QColor colorForTerminatedItem();
QColor colorForParentOfTerminatedItem();
QColor colorForNonmatchingTerminatedItem();
QColor colorForNewItem();
QColor colorForParentOfNewItem();
QColor colorForNonmatchingNewItem();
} // namespace EntryColors
