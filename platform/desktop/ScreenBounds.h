#pragma once

#include <QObject>

class QWidget;

// Keeps a window from opening larger than its screen, and from growing out of it. What then has too
// little room can be scrolled.
class ScreenBounds : public QObject
{
    Q_OBJECT
public:
    explicit ScreenBounds(QWidget &window); // which owns it

    bool eventFilter(QObject *window, QEvent *event) override;

    // The size that a window can have on its screen, without its frame.
    static QSize maxSize(const QWidget &window);

private:
    static void boundSize(QWidget &window);
    static void fitIn(QWidget &window);
    static void moveIn(QWidget &window);

    bool isOpening_ = false;
};
