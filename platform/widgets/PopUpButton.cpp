// SPDX-License-Identifier: Apache-2.0
#include "platform/widgets/PopUpButton.h"

#include <QAbstractItemView>
#include <QKeyEvent>
#include <QScopedValueRollback>

PopUpButton::PopUpButton(QWidget *parent)
    : QComboBox(parent)
{
    // A closed box emits activated for every item that a key steps to.
    connect(this, &QComboBox::activated, this, [this] {
        if (!isStepping_)
            noteActivated();
    });
}

void PopUpButton::settle()
{
    settledIndex_ = currentIndex();
}

void PopUpButton::commit()
{
    if (hasStepped())
        noteActivated();
}

bool PopUpButton::isChoosing() const
{
    return hasStepped() || view()->isVisible();
}

void PopUpButton::noteActivated()
{
    settle();
    Q_EMIT chosen();
}

void PopUpButton::keyPressEvent(QKeyEvent *event)
{
    const int key = event->key();
    if (hasStepped() && (key == Qt::Key_Return || key == Qt::Key_Enter)) {
        commit();
    } else if (hasStepped() && key == Qt::Key_Escape) {
        setCurrentIndex(settledIndex_);
    } else {
        const QScopedValueRollback stepping(isStepping_, true);
        QComboBox::keyPressEvent(event);
    }
}

// Lets the wheel scroll the view around the box. The open list gets its own wheel events.
void PopUpButton::wheelEvent(QWheelEvent *event)
{
    event->ignore();
}

void PopUpButton::focusOutEvent(QFocusEvent *event)
{
    QComboBox::focusOutEvent(event);
    if (event->reason() != Qt::PopupFocusReason)
        commit();
}
