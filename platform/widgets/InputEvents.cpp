// SPDX-License-Identifier: Apache-2.0
#include "platform/widgets/InputEvents.h"

#include <QCoreApplication>
#include <QInputEvent>
#include <QPointer>

InputEvents::InputEvents(QObject *parent)
    : QObject(parent)
{
    parent->installEventFilter(this);
}

InputEvents &InputEvents::instance()
{
    static QPointer<InputEvents> events;
    if (!events)
        events = new InputEvents(QCoreApplication::instance());
    return *events;
}

bool InputEvents::eventFilter(QObject *, QEvent *event)
{
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::KeyPress:
    case QEvent::Shortcut:
        ++current_;
        isAltHeld_ = event->isInputEvent() &&
                     static_cast<QInputEvent *>(event)->modifiers() & Qt::AltModifier;
        break;
    default:
        break;
    }
    return false;
}
