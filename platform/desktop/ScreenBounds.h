// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QObject>

class QWidget;

// Keeps a window no larger than its screen; contents that do not fit then scroll.
class ScreenBounds : public QObject
{
    Q_OBJECT
public:
    explicit ScreenBounds(QWidget &window); // owns this

    bool eventFilter(QObject *window, QEvent *event) override;

    // The maximum size of the window's content on its screen.
    static QSize maxSize(const QWidget &window);

private:
    static void boundSize(QWidget &window);
    static void fitIn(QWidget &window);
    static void moveIn(QWidget &window);

    bool isOpening_ = false;
};
