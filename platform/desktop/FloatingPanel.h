#pragma once

class QWidget;

// Tool windows that float above the program's other windows, whichever of them is in use.
namespace FloatingPanel {
// Makes one of a window that is not shown yet.
void prepare(QWidget &panel);
// To the front, with the keyboard; the first time beside the window in use.
void makeKey(QWidget &panel, bool worksWhenModal = false);
} // namespace FloatingPanel
