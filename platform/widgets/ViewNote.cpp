// SPDX-License-Identifier: Apache-2.0
#include "platform/widgets/ViewNote.h"

#include <QEvent>
#include <QPushButton>

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

// Beside the note, not in it: the mouse passes through the note.
void ViewNote::addButton(const QPushButton &like)
{
    button_ = new QPushButton(like.text(), parentWidget());
    button_->setToolTip(like.toolTip());
    button_->setAccessibleName(like.accessibleName());
    button_->setAutoDefault(true);
    button_->hide();
    placeButton();
}

void ViewNote::offerButton(bool isOffered)
{
    isButtonOffered_ = isOffered;
    setVisible(!isHidden());
}

void ViewNote::setVisible(bool visible)
{
    QLabel::setVisible(visible);
    if (button_)
        button_->setVisible(visible && isButtonOffered_);
}

bool ViewNote::eventFilter(QObject *, QEvent *event)
{
    if (event->type() == QEvent::Resize || event->type() == QEvent::Move) {
        setGeometry(view_.geometry());
        placeButton();
    }
    return false;
}

void ViewNote::placeButton()
{
    if (!button_)
        return;
    const QRect area = view_.geometry();
    const QSize size = button_->sizeHint();
    QRect place(0, 0, std::min(size.width(), area.width()), size.height());
    place.moveCenter(area.center());
    place.moveTop(area.center().y() + fontMetrics().lineSpacing());
    button_->setGeometry(place);
}
