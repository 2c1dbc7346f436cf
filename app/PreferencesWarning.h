#pragma once

#include "platform/runloop/NotificationCenter.h"

#include <QMessageBox>
#include <QPointer>

class QWidget;

// Tells the user once what is wrong with the files of the preferences, now and when it happens.
class PreferencesWarning
{
public:
    explicit PreferencesWarning(QWidget &parent);

    QMessageBox *box() const { return box_; } // null while there is nothing to tell

private:
    void tell(const QString &problem);

    QWidget &parent_;
    QPointer<QMessageBox> box_;
    NotificationCenter::Observation observation_;
};
