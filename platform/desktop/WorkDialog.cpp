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
constexpr std::chrono::milliseconds unnoticed(500);
constexpr std::chrono::milliseconds betweenSteps(50);
} // namespace

WorkDialog::WorkDialog(const QString &title, LongWork::Kind kind)
    : title_(title)
    , kind_(kind)
{}

WorkDialog::~WorkDialog()
{
    // What was made under it is painted before it goes.
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
    runUnnoticed(loop);
    if (hasEnded)
        return;
    show();
    QObject::connect(dialog_, &QProgressDialog::canceled, &loop, [&] { progress.cancel(); });
    QTimer timer;
    timer.callOnTimeout(&timer, [this, &progress] {
        // The dialog itself would turn the event loop for it.
        dialog_->findChild<QProgressBar *>()->setValue(
            static_cast<int>(steps * progress.reached()));
    });
    timer.start(betweenSteps);
    loop.exec();
    if (!hasEnded) // the program is to end
        progress.cancel();
    dialog_->findChild<QPushButton *>()->setEnabled(false);
}

void WorkDialog::runUnnoticed(QEventLoop &loop)
{
    const BusyCursor busy;
    QTimer::singleShot(unnoticed, &loop, &QEventLoop::quit);
    loop.exec(QEventLoop::ExcludeUserInputEvents);
}

// The keys that are pressed meanwhile go where they went before.
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
    // It stays until the work has seen that it is to end. The library connects these by their
    // names.
    QObject::disconnect(dialog_, SIGNAL(canceled()), dialog_, SLOT(cancel()));
    dialog_->show();
}
