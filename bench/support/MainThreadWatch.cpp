// SPDX-License-Identifier: Apache-2.0
#include "bench/support/MainThreadWatch.h"

#include <QApplication>
#include <QEvent>
#include <QMainWindow>
#include <QProgressBar>

namespace {
bool showsProgress()
{
    const QWidgetList windows = QApplication::topLevelWidgets();
    return std::any_of(windows.begin(), windows.end(), [](const QWidget *window) {
        const auto *const bar = window->findChild<QProgressBar *>();
        return window->isVisible() && bar && bar->isVisible();
    });
}
} // namespace

MainThreadWatch::MainThreadWatch()
{
    qApp->installEventFilter(this);
    timer_.setTimerType(Qt::PreciseTimer);
    timer_.callOnTimeout(this, &MainThreadWatch::note);
    timer_.start(1);
    restart();
}

MainThreadWatch::~MainThreadWatch() = default;

void MainThreadWatch::restart()
{
    settle();
    clock_.start();
    last_ = longest_ = maxAnnounced_ = firstPaint_ = 0;
    wasAnnounced_ = showsProgress();
}

void MainThreadWatch::settle()
{
    QElapsedTimer quiet;
    quiet.start();
    while (quiet.elapsed() < 30) {
        QElapsedTimer turn;
        turn.start();
        QCoreApplication::processEvents();
        if (turn.elapsed() > 2)
            quiet.start();
    }
}

void MainThreadWatch::note()
{
    const double now = milliseconds();
    double &longest = wasAnnounced_ ? maxAnnounced_ : longest_;
    longest = std::max(longest, now - last_);
    last_ = now;
    wasAnnounced_ = showsProgress();
}

bool MainThreadWatch::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Paint && firstPaint_ == 0 && watched->isWidgetType() &&
        qobject_cast<QMainWindow *>(static_cast<QWidget *>(watched)->window()))
        QMetaObject::invokeMethod(
            this, [this] { firstPaint_ = firstPaint_ == 0 ? milliseconds() : firstPaint_; },
            Qt::QueuedConnection);
    return false;
}

double MainThreadWatch::milliseconds() const
{
    return static_cast<double>(clock_.nsecsElapsed()) * 1e-6;
}

double MainThreadWatch::elapsed() const
{
    return static_cast<double>(clock_.nsecsElapsed()) * 1e-9;
}
