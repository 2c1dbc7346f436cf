#pragma once

#include "platform/desktop/WaitDialog.h"
#include "platform/runloop/RunLoop.h"

#include <QPointer>

// Tells the main run loop what the desktop knows: it is in another mode while a popup menu is open
// or an application-modal dialog runs, and past half a second a wait is shown.
class DesktopRunLoop : public QObject, private WaitDisplay
{
    Q_OBJECT
public:
    explicit DesktopRunLoop(RunLoop &loop = RunLoop::main());
    ~DesktopRunLoop() override;

    // The wait that is shown, or null.
    WaitDialog *waitDialog() const { return waitDialog_; }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void waiting(Wait &wait, std::chrono::milliseconds elapsed) override;
    void waitEnded() override;

    RunLoop &loop_;
    QPointer<WaitDialog> waitDialog_; // goes with its window, too
};
