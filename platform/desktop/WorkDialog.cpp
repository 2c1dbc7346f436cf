// SPDX-License-Identifier: Apache-2.0
#include "platform/desktop/WorkDialog.h"

#include "platform/runloop/RunLoop.h"
#include "platform/widgets/BusyCursor.h"
#include "platform/widgets/VisibleText.h"

#include <QApplication>
#include <QEventLoop>
#include <QProgressBar>
#include <QProgressDialog>
#include <QPushButton>
#include <QThread>
#include <QTimer>

namespace {
constexpr int steps = 1000;
constexpr std::chrono::milliseconds displayDelay(500);
constexpr std::chrono::milliseconds updateInterval(50);
} // namespace

WorkDialog::WorkDialog(const QString &title, LongWork::Kind kind)
    : title_(title)
    , kind_(kind)
{}

WorkDialog::~WorkDialog()
{
    // Paint what changed below the dialog before it closes.
    if (dialog_)
        QApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    delete dialog_;
}

void WorkDialog::run(const Work &work)
{
    WorkProgress progress;
    std::exception_ptr problem;
    const std::unique_ptr<QThread> thread(QThread::create([&] {
        try {
            work(progress);
        } catch (...) {
            problem = std::current_exception();
        }
    }));
    wait(*thread, progress);
    thread->wait();
    if (problem)
        std::rethrow_exception(problem);
}

void WorkDialog::wait(QThread &thread, WorkProgress &progress)
{
    const RunLoop::Hold hold;
    QEventLoop loop;
    bool hasEnded = false;
    QObject::connect(&thread, &QThread::finished, &loop, [&] {
        hasEnded = true;
        loop.quit();
    });
    thread.start();
    if (kind_ == LongWork::Kind::Moment) {
        showMoment();
        loop.exec(QEventLoop::ExcludeUserInputEvents);
        return;
    }
    runWithoutDialog(loop);
    if (hasEnded)
        return;
    show();
    QObject::connect(dialog_, &QProgressDialog::canceled, &loop, [&] { progress.cancel(); });
    QTimer timer;
    timer.callOnTimeout(&timer, [this, &progress] {
        // QProgressDialog::setValue() would run the event loop.
        dialog_->findChild<QProgressBar *>()->setValue(
            static_cast<int>(steps * progress.reached()));
    });
    timer.start(updateInterval);
    loop.exec();
    if (!hasEnded) // the program is quitting
        progress.cancel();
    dialog_->findChild<QPushButton *>()->setEnabled(false);
}

void WorkDialog::runWithoutDialog(QEventLoop &loop)
{
    const BusyCursor busy;
    QTimer::singleShot(displayDelay, &loop, &QEventLoop::quit);
    loop.exec(QEventLoop::ExcludeUserInputEvents);
}

// Takes no focus, so that keys still go to the window below.
void WorkDialog::showMoment()
{
    dialog_ = new QProgressDialog(QApplication::activeWindow(), Qt::WindowDoesNotAcceptFocus);
    dialog_->setAttribute(Qt::WA_ShowWithoutActivating);
    dialog_->setCancelButton(nullptr);
    dialog_->setRange(0, 0);
    dialog_->setLabelText(visibleText(title_));
    dialog_->show();
}

void WorkDialog::show()
{
    dialog_ = new QProgressDialog(QApplication::activeWindow());
    dialog_->setWindowModality(Qt::ApplicationModal);
    dialog_->setAutoReset(false);
    dialog_->setRange(0, steps);
    dialog_->setLabelText(visibleText(title_));
    // Stay open until the work has ended. QProgressDialog makes this connection by name, so it must
    // be undone by name.
    QObject::disconnect(dialog_, SIGNAL(canceled()), dialog_, SLOT(cancel()));
    dialog_->show();
}
