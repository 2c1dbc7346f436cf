// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/runloop/Wait.h"

#include <QDialog>

class QLabel;
class QPushButton;

// Shows, over all windows, what the program waits for. The user may skip that or cancel the whole
// wait; the dialog stays open until the wait has ended.
class WaitDialog : public QDialog
{
    Q_OBJECT
public:
    explicit WaitDialog(QWidget *parent);

    void showWait(Wait &wait); // call repeatedly during the wait
    void reject() override;

private:
    void skip();
    void showSubject(const Wait::Subject &subject);
    QString fitting(const QString &text) const;

    Wait *wait_ = nullptr;
    Wait::Subject shown_;
    QLabel *subjectLabel_;
    QPushButton *skipButton_;
    QPushButton *cancelButton_;
};
