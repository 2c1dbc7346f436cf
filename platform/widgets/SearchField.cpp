// SPDX-License-Identifier: Apache-2.0
#include "platform/widgets/SearchField.h"

#include <QKeyEvent>

namespace {
constexpr int typingPause = 150; // milliseconds
} // namespace

SearchField::SearchField(QWidget *parent)
    : QLineEdit(parent)
{
    delay_.setSingleShot(true);
    delay_.setInterval(typingPause);
    connect(this, &QLineEdit::textChanged, &delay_, qOverload<>(&QTimer::start));
    connect(&delay_, &QTimer::timeout, this, &SearchField::searchRequested);
    connect(this, &QLineEdit::returnPressed, this, &SearchField::searchRequested);
}

QSize SearchField::sizeHint() const
{
    return {fontMetrics().averageCharWidth() * characters_, QLineEdit::sizeHint().height()};
}

void SearchField::setCharacters(int count)
{
    characters_ = count;
    updateGeometry();
}

void SearchField::keyPressEvent(QKeyEvent *event)
{
    if (event->key() != Qt::Key_Escape) {
        QLineEdit::keyPressEvent(event);
        return;
    }
    cancelSearch();
    event->accept();
}

void SearchField::cancelSearch()
{
    clear();
    cancelPendingSearch();
    Q_EMIT cancelled();
}
