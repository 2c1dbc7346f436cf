// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

class QWidget;

namespace WindowTitle {
// Sets the title, shortened to one line, and the desktop's mark for unsaved changes.
void set(QWidget &window, const QString &title, bool isEdited);
// The title, with a star if the document has unsaved changes.
QString shown(const QWidget &window);
} // namespace WindowTitle
