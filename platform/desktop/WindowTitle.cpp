// SPDX-License-Identifier: Apache-2.0
#include "platform/desktop/WindowTitle.h"

#include "platform/widgets/VisibleText.h"

#include <QWidget>

namespace {
const QLatin1String mark("[*]");
const QLatin1String escapedMark("[*][*]"); // Qt shows it as [*]
} // namespace

void WindowTitle::set(QWidget &window, const QString &title, bool isEdited)
{
    QString text = visibleText(title);
    text.replace(mark, escapedMark);
    window.setWindowModified(false); // no mark, no modified window
    window.setWindowTitle(isEdited ? mark + text : text);
    window.setWindowModified(isEdited);
}

QString WindowTitle::shown(const QWidget &window)
{
    QString title = window.windowTitle();
    if (window.isWindowModified())
        title.replace(0, mark.size(), u'*');
    return title.replace(escapedMark, mark);
}
