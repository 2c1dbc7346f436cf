// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QLabel>

// A note right under a field, above what is there, so that nothing moves. Shown while it has a text
// and the field has the keyboard.
class FieldNote : public QLabel
{
    Q_OBJECT
public:
    explicit FieldNote(QWidget &field); // in a window, which owns the note

    void setNote(const QString &note); // plain; empty: none

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void place();

    QWidget &field_;
};
