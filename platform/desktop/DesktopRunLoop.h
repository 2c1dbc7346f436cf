// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/desktop/WaitDialog.h"
#include "platform/runloop/RunLoop.h"

#include <QPointer>

// Connects the main run loop to the desktop: the loop leaves its default mode while a popup menu or
// an application-modal dialog is open, and a wait of more than half a second is shown.
class DesktopRunLoop : public QObject, private WaitDisplay
{
    Q_OBJECT
public:
    explicit DesktopRunLoop(RunLoop &loop = RunLoop::main());
    ~DesktopRunLoop() override;

    WaitDialog *waitDialog() const { return waitDialog_; } // null: none shown

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void waiting(Wait &wait, std::chrono::milliseconds elapsed) override;
    void waitEnded() override;

    RunLoop &loop_;
    QPointer<WaitDialog> waitDialog_; // also deleted with its parent window
};
