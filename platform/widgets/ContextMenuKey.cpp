// SPDX-License-Identifier: Apache-2.0
#include "platform/widgets/ContextMenuKey.h"

#include <QContextMenuEvent>
#include <QCoreApplication>
#include <QShortcut>
#include <QWidget>

void ContextMenuKey::addTo(QWidget &window)
{
    auto *const key = new QShortcut(QKeySequence(Qt::SHIFT | Qt::Key_F10), &window);
    QObject::connect(key, &QShortcut::activated, &window, [&window] {
        QWidget *const focused = window.focusWidget();
        if (!focused)
            return;
        const QPoint place = focused->inputMethodQuery(Qt::ImCursorRectangle).toRect().center();
        QContextMenuEvent event(QContextMenuEvent::Keyboard, place, focused->mapToGlobal(place));
        QCoreApplication::sendEvent(focused, &event);
    });
}
