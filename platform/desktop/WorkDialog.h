#pragma once

#include "platform/LongWork.h"

#include <QPointer>

class QProgressDialog;
class QThread;

// Shows long work over all windows, with a button to end it. Work that is soon done shows nothing.
class WorkDialog : public WorkDisplay
{
public:
    WorkDialog(const QString &title, LongWork::Length length);
    ~WorkDialog() override;

    void run(const Work &work) override;

private:
    void wait(QThread &thread, WorkProgress &progress);
    void show();

    QString title_;
    LongWork::Length length_;
    QPointer<QProgressDialog> dialog_; // goes with the window that it stands over, too
};
