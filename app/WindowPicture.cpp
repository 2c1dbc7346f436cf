// SPDX-License-Identifier: Apache-2.0
#include "app/WindowPicture.h"

#include <QEvent>
#include <QImageWriter>
#include <QTimer>
#include <QWidget>

namespace {
// Time for work that a window defers until its first paint, such as column widths.
constexpr int settlingTime = 200; // milliseconds
} // namespace

WindowPicture::WindowPicture(QWidget &window, const QString &file)
    : window_(window)
    , file_(file)
{
    window.installEventFilter(this);
}

bool WindowPicture::eventFilter(QObject *window, QEvent *event)
{
    if (event->type() == QEvent::Paint) {
        window->removeEventFilter(this);
        QTimer::singleShot(settlingTime, this, &WindowPicture::save);
    }
    return false;
}

void WindowPicture::save()
{
    QImageWriter writer(file_);
    if (writer.write(window_.grab().toImage()))
        Q_EMIT saved();
    else
        Q_EMIT failed(tr("The picture %1 could not be saved: %2").arg(file_, writer.errorString()));
}
