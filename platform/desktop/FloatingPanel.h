// SPDX-License-Identifier: Apache-2.0
#pragma once

class QWidget;

// Tool windows that stay above the program's other windows.
namespace FloatingPanel {
// Turns a window that is not shown yet into a floating panel.
void prepare(QWidget &panel);
// Raises and activates it; the first time it opens beside the active window.
void makeKey(QWidget &panel, bool worksWhenModal = false);
} // namespace FloatingPanel
