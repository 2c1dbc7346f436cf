#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

// Notes for how long the main thread does not get to its events, in milliseconds. Times with a
// progress dialog in sight are counted apart.
class MainThreadWatch : public QObject
{
public:
    MainThreadWatch();
    ~MainThreadWatch() override;

    void restart();
    void settle(); // runs the event loop until nothing is left to do
    double longest() const { return longest_; }
    double longestAnnounced() const { return longestAnnounced_; }
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
    double longestAnnounced_ = 0;
    double firstPaint_ = 0;
    bool wasAnnounced_ = false;
};
