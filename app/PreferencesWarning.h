// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/runloop/NotificationCenter.h"

#include <QPointer>

class QMessageBox;
class QWidget;

// Warns the user about problems with the preferences files, at the start and when they occur.
class PreferencesWarning
{
public:
    explicit PreferencesWarning(QWidget &parent);

    ~PreferencesWarning();

private:
    void show(const QString &problem);

    QWidget &parent_;
    QPointer<QMessageBox> box_;
    NotificationCenter::Observation observation_;
};
