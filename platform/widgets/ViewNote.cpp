// SPDX-License-Identifier: Apache-2.0
#include "platform/widgets/ViewNote.h"

#include <QEvent>

ViewNote::ViewNote(const QString &text, QWidget &view)
    : QLabel(text, view.parentWidget())
    , view_(view)
{
    setAlignment(Qt::AlignCenter);
    setWordWrap(true);
    setForegroundRole(QPalette::PlaceholderText);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    hide();
    view.installEventFilter(this);
}

bool ViewNote::eventFilter(QObject *, QEvent *event)
{
    if (event->type() == QEvent::Resize || event->type() == QEvent::Move)
        setGeometry(view_.geometry());
    return false;
}
