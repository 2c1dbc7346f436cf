#pragma once

#include "platform/runloop/Wait.h"

#include <QDialog>

class QLabel;
class QPushButton;

// Says, over all windows, that the program waits and what for. The user may skip that or cancel
// the whole; the dialog stays until the wait has ended.
class WaitDialog : public QDialog
{
    Q_OBJECT
public:
    explicit WaitDialog(QWidget *parent);

    void showWait(Wait &wait); // again and again while it goes on
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
