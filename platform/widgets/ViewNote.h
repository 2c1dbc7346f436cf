// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QLabel>

// Shows in the middle of a view why it is empty. Hidden at first.
class ViewNote : public QLabel
{
    Q_OBJECT
public:
    // Placed above the view in the same parent, which owns it.
    ViewNote(const QString &text, QWidget &view);

    bool eventFilter(QObject *view, QEvent *event) override;

private:
    QWidget &view_;
};
