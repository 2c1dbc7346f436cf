#pragma once

#include <QColor>

// The colours of entries that came or went, of their parents, and of those that a search does not
// match. As text, each is drawn as dark or as light as its background takes.
namespace EntryColors {
QColor colorForTerminatedItem();
QColor colorForParentOfTerminatedItem();
QColor colorForNonmatchingTerminatedItem();
QColor colorForNewItem();
QColor colorForParentOfNewItem();
QColor colorForNonmatchingNewItem();
} // namespace EntryColors
