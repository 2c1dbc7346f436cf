#include "platform/desktop/WindowTitle.h"

#include <QWidget>

void WindowTitle::set(QWidget &window, const QString &title, bool isEdited)
{
    const QLatin1String mark("[*]");
    QString text = title;
    text.replace(mark, QLatin1String("[*][*]")); // stands for itself
    window.setWindowModified(false);             // no mark, no modified window
    window.setWindowTitle(isEdited ? mark + text : text);
    window.setWindowModified(isEdited);
}
