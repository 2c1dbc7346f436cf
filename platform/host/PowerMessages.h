// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/host/SleepMessages.h"

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QDBusUnixFileDescriptor>

// From the login manager. The system delays sleep, for a few seconds at most, until it is allowed.
// Without a login manager nothing is reported.
class PowerMessages : public SleepMessages
{
    Q_OBJECT
public:
    explicit PowerMessages(const QDBusConnection &bus = QDBusConnection::systemBus());

    void allowSleep(quint64 request) override;

private Q_SLOTS:
    void prepareForSleep(bool begins);

private:
    void delaySleep();

    QDBusConnection bus_;
    QDBusServiceWatcher watcher_;
    QDBusUnixFileDescriptor delay_; // sleep is delayed while it is open
    quint64 request_ = 0;
};
