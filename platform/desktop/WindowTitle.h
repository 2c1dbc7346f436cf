#pragma once

#include <QString>

class QWidget;

namespace WindowTitle {
// As far as one line can show the title. Marks the window of a document with unsaved changes in the
// way of the desktop.
void set(QWidget &window, const QString &title, bool isEdited);
// With a star if the document has unsaved changes.
QString shown(const QWidget &window);
} // namespace WindowTitle
