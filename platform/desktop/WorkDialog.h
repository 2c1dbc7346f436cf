// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/runloop/LongWork.h"

#include <QPointer>

class QEventLoop;
class QProgressDialog;
class QThread;

// Shows long work in a dialog over all windows with a Cancel button; short work shows nothing. Work
// of kind Moment is shown immediately, without a button.
class WorkDialog : public WorkDisplay
{
public:
    WorkDialog(const QString &title, LongWork::Kind kind);
    ~WorkDialog() override;

    void run(const Work &work) override;

private:
    void wait(QThread &thread, WorkProgress &progress);
    void runWithoutDialog(QEventLoop &loop);
    void show();
    void showMoment();

    QString title_;
    LongWork::Kind kind_;
    QPointer<QProgressDialog> dialog_; // also deleted with its parent window
};
