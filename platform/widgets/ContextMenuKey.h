// SPDX-License-Identifier: Apache-2.0
#pragma once

class QWidget;

// Shift+F10, which not every desktop maps to the menu key.
namespace ContextMenuKey {
// Makes it open the context menu of the focused widget in the window.
void addTo(QWidget &window);
} // namespace ContextMenuKey
