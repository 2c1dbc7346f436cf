#include "platform/desktop/FactField.h"

#include "platform/desktop/PlainToolTip.h"

#include <QFocusEvent>
#include <QGuiApplication>
#include <QPainter>

FactField::FactField(QWidget *parent)
    : QLineEdit(parent)
{
    setReadOnly(true);
    setFrame(false);
    setTextMargins(0, 0, 0, 0);
    setContentsMargins(0, 0, 0, 0);
    setDimmed(false);
}

void FactField::setFact(const QString &text)
{
    if (text == this->text())
        return;
    setText(text);
    setCursorPosition(0);
    updateToolTip();
}

void FactField::setDimmed(bool dimmed)
{
    isDimmed_ = dimmed;
    const QPalette base = QGuiApplication::palette();
    QPalette palette = base;
    palette.setColor(QPalette::Base, Qt::transparent);
    palette.setColor(QPalette::Text,
                     base.color(dimmed ? QPalette::PlaceholderText : QPalette::WindowText));
    setPalette(palette);
}

QSize FactField::sizeHint() const
{
    return {fontMetrics().averageCharWidth() * 24, QLineEdit::sizeHint().height()};
}

QSize FactField::minimumSizeHint() const
{
    return {fontMetrics().averageCharWidth() * 8, QLineEdit::minimumSizeHint().height()};
}

void FactField::paintEvent(QPaintEvent *event)
{
    if (hasFocus() || !isClipped()) {
        QLineEdit::paintEvent(event);
        return;
    }
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::Text));
    painter.drawText(contentsRect().adjusted(2, 0, -2, 0), Qt::AlignVCenter | Qt::TextSingleLine,
                     fontMetrics().elidedText(text(), Qt::ElideRight, contentsRect().width() - 4));
}

void FactField::resizeEvent(QResizeEvent *event)
{
    QLineEdit::resizeEvent(event);
    updateToolTip();
}

void FactField::focusOutEvent(QFocusEvent *event)
{
    QLineEdit::focusOutEvent(event);
    // A menu takes the focus only for a while, and may hold the command to copy.
    if (event->reason() != Qt::PopupFocusReason && event->reason() != Qt::MenuBarFocusReason &&
        event->reason() != Qt::ActiveWindowFocusReason) {
        deselect();
        setCursorPosition(0);
    }
}

void FactField::changeEvent(QEvent *event)
{
    QLineEdit::changeEvent(event);
    if (event->type() == QEvent::ApplicationPaletteChange)
        setDimmed(isDimmed_);
    else if (event->type() == QEvent::FontChange)
        updateToolTip();
}

bool FactField::isClipped() const
{
    return fontMetrics().horizontalAdvance(text()) > contentsRect().width() - 4;
}

void FactField::updateToolTip()
{
    setToolTip(isClipped() ? plainToolTip(text()) : QString());
}
