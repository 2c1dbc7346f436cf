// SPDX-License-Identifier: Apache-2.0
#include "platform/widgets/FieldNote.h"

#include <QEvent>
#include <QFocusEvent>

FieldNote::FieldNote(QWidget &field)
    : QLabel(field.window())
    , field_(field)
{
    setTextFormat(Qt::PlainText);
    setWordWrap(true);
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::ToolTipBase);
    setForegroundRole(QPalette::ToolTipText);
    setFrameShape(QFrame::Box);
    setMargin(4);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    hide();
    field.installEventFilter(this);
    field.window()->installEventFilter(this);
}

void FieldNote::setNote(const QString &note)
{
    setText(note);
    field_.setAccessibleDescription(note);
    place();
    setVisible(!note.isEmpty() && field_.hasFocus());
}

bool FieldNote::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Resize || event->type() == QEvent::Move)
        place();
    if (watched != &field_)
        return false;
    if (event->type() == QEvent::FocusIn)
        setVisible(!text().isEmpty());
    else if (event->type() == QEvent::FocusOut &&
             static_cast<const QFocusEvent *>(event)->reason() != Qt::PopupFocusReason)
        hide();
    return false;
}

// As wide as the text where the window has room, and ending where the field ends.
void FieldNote::place()
{
    constexpr int maxCharacters = 60;
    const QWidget &window = *field_.window();
    const QPoint end = field_.mapTo(&window, field_.rect().bottomRight());
    const int padding = 2 * (margin() + frameWidth()) + 2;
    const int wanted = std::min(fontMetrics().horizontalAdvance(text()),
                                maxCharacters * fontMetrics().averageCharWidth()) +
                       padding;
    const int width = std::min(std::max(field_.width(), wanted), window.width());
    const int left = std::max(0, end.x() + 1 - width);
    setGeometry(left, end.y() + 2, width, heightForWidth(width));
    raise();
}
