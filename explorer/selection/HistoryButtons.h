#pragma once

#include <QObject>

class QWidget;

// The mouse buttons for going back and forward, wherever in a window they are pressed.
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
