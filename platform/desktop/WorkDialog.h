#pragma once

#include "platform/runloop/LongWork.h"

#include <QPointer>

class QEventLoop;
class QProgressDialog;
class QThread;

// Shows long work over all windows, with a button to end it; work that is soon done shows nothing.
// Work of a moment is shown at once, without a button.
class WorkDialog : public WorkDisplay
{
public:
    WorkDialog(const QString &title, LongWork::Kind kind);
    ~WorkDialog() override;

    void run(const Work &work) override;

private:
    void wait(QThread &thread, WorkProgress &progress);
    void runUnnoticed(QEventLoop &loop);
    void show();
    void showMoment();

    QString title_;
    LongWork::Kind kind_;
    QPointer<QProgressDialog> dialog_; // goes with the window that it stands over, too
};
