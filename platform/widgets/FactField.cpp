// SPDX-License-Identifier: Apache-2.0
#include "platform/widgets/FactField.h"

#include "platform/widgets/PlainToolTip.h"
#include "platform/widgets/VisibleText.h"

#include <QFocusEvent>
#include <QGuiApplication>
#include <QMenu>
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

void FactField::setFact(const QString &fact)
{
    if (fact == fact_)
        return;
    fact_ = fact;
    setText(visibleCharacters(fact));
    setCursorPosition(0);
    updateToolTip();
}

void FactField::setExplanation(const QString &explanation)
{
    explanation_ = explanation;
    setAccessibleDescription(explanation);
    updateToolTip();
}

void FactField::copy() const
{
    copyTo(QClipboard::Clipboard);
}

void FactField::copyTo(QClipboard::Mode clipboard) const
{
    if (hasSelectedText())
        QGuiApplication::clipboard()->setText(fact_.mid(selectionStart(), selectionLength()),
                                              clipboard);
}

void FactField::keyPressEvent(QKeyEvent *event)
{
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (event->matches(QKeySequence::Copy))
        copy();
    else if (isLink_ && isReturn)
        Q_EMIT linkFollowed(event->modifiers() & Qt::ControlModifier);
    else
        QLineEdit::keyPressEvent(event);
}

void FactField::mousePressEvent(QMouseEvent *event)
{
    const bool inNewWindow = event->button() == Qt::MiddleButton;
    if (isLink_ && (inNewWindow || (event->button() == Qt::LeftButton &&
                                    event->modifiers() == Qt::ControlModifier)))
        Q_EMIT linkFollowed(inNewWindow);
    else
        QLineEdit::mousePressEvent(event);
}

void FactField::mouseReleaseEvent(QMouseEvent *event)
{
    QLineEdit::mouseReleaseEvent(event);
    if (event->button() == Qt::LeftButton && QGuiApplication::clipboard()->supportsSelection())
        copyTo(QClipboard::Selection);
}

void FactField::contextMenuEvent(QContextMenuEvent *event)
{
    auto *const menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    if (isLink_) {
        menu->addAction(tr("&Go to Target"), this, [this] { Q_EMIT linkFollowed(false); });
        menu->addAction(tr("Open Target in &New Window"), this,
                        [this] { Q_EMIT linkFollowed(true); });
        menu->addSeparator();
    }
    menu->addAction(QIcon::fromTheme(QStringLiteral("edit-copy")), tr("&Copy"), QKeySequence::Copy,
                    this, &FactField::copy)
        ->setEnabled(hasSelectedText());
    menu->addAction(QIcon::fromTheme(QStringLiteral("edit-select-all")), tr("Select &All"),
                    QKeySequence::SelectAll, this, &QLineEdit::selectAll)
        ->setEnabled(!text().isEmpty());
    menu->popup(event->globalPos());
}

void FactField::setDimmed(bool dimmed)
{
    isDimmed_ = dimmed;
    updateColors();
}

void FactField::setLink(bool isLink)
{
    if (isLink == isLink_)
        return;
    isLink_ = isLink;
    updateColors();
    QFont styled = font();
    styled.setUnderline(isLink);
    setFont(styled);
}

void FactField::updateColors()
{
    QPalette palette; // its other colours follow the theme
    palette.setColor(QPalette::Base, Qt::transparent);
    palette.setColor(QPalette::Text,
                     QGuiApplication::palette().color(isDimmed_ ? QPalette::PlaceholderText
                                                      : isLink_ ? QPalette::Link
                                                                : QPalette::WindowText));
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
    // A menu takes the focus temporarily and may contain the copy command.
    if (event->reason() != Qt::PopupFocusReason && event->reason() != Qt::MenuBarFocusReason &&
        event->reason() != Qt::ActiveWindowFocusReason) {
        deselect();
        setCursorPosition(0);
    }
}

void FactField::changeEvent(QEvent *event)
{
    QLineEdit::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        updateColors();
    else if (event->type() == QEvent::FontChange)
        updateToolTip();
}

bool FactField::isClipped() const
{
    return fontMetrics().horizontalAdvance(text()) > contentsRect().width() - 4;
}

void FactField::updateToolTip()
{
    QStringList lines;
    if (isClipped())
        lines.append(text());
    if (!explanation_.isEmpty())
        lines.append(explanation_);
    setToolTip(plainToolTip(lines.join(u'\n')));
}
