#pragma once

class QWidget;

// Shift and F10, which not every desktop takes for the menu key.
namespace ContextMenuKey {
// In a window: opens the context menu of what has the keyboard.
void addTo(QWidget &window);
} // namespace ContextMenuKey
