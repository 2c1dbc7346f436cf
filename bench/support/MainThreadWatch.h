// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

// Measures how long the main thread does not process events, in milliseconds; separately while a
// progress dialog is visible.
class MainThreadWatch : public QObject
{
public:
    MainThreadWatch();
    ~MainThreadWatch() override;

    void restart();
    void settle(); // runs the event loop until it is idle
    double longest() const { return longest_; }
    double maxAnnounced() const { return maxAnnounced_; }
    double firstPaint() const { return firstPaint_; } // of a main window; 0: none
    double elapsed() const;                           // in seconds

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void note();
    double milliseconds() const;

    QTimer timer_;
    QElapsedTimer clock_;
    double last_ = 0;
    double longest_ = 0;
    double maxAnnounced_ = 0;
    double firstPaint_ = 0;
    bool wasAnnounced_ = false;
};
