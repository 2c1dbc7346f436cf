#pragma once

#include "platform/RunLoop.h"

#include <QPointer>
#include <QProgressDialog>

// Tells the main run loop what the desktop knows: it is in another mode while a popup menu is open
// or an application-modal dialog runs, and past half a second a wait is shown.
class DesktopRunLoop : public QObject, private WaitDisplay
{
    Q_OBJECT
public:
    explicit DesktopRunLoop(RunLoop &loop = RunLoop::main());
    ~DesktopRunLoop() override;

    // The wait that is shown, or null.
    QProgressDialog *progress() const { return progress_; }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void waiting(std::chrono::milliseconds elapsed) override;
    void waitEnded() override;

    RunLoop &loop_;
    QPointer<QProgressDialog> progress_; // goes with its window, too
};
