// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QObject>

class QWidget;

// The back and forward buttons of the mouse, anywhere in a window.
class HistoryButtons : public QObject
{
    Q_OBJECT
public:
    explicit HistoryButtons(QWidget &window); // which owns it

Q_SIGNALS:
    void backPressed();
    void forwardPressed();

protected:
    bool eventFilter(QObject *receiver, QEvent *event) override;

private:
    QWidget &window_;
};
