// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QDBusUnixFileDescriptor>
#include <QObject>

// Reports the system's sleep and wake from the login manager. The system delays sleep, for a few
// seconds at most, until it is allowed. Without a login manager nothing is reported.
class PowerMessages : public QObject
{
    Q_OBJECT
public:
    explicit PowerMessages(const QDBusConnection &bus = QDBusConnection::systemBus());

    // Only the last request can be allowed.
    void allowSleep(quint64 request);

Q_SIGNALS:
    void willSleep(quint64 request);
    void hasPoweredOn();

private Q_SLOTS:
    void prepareForSleep(bool begins);

private:
    void delaySleep();

    QDBusConnection bus_;
    QDBusServiceWatcher watcher_;
    QDBusUnixFileDescriptor delay_; // sleep is delayed while it is open
    quint64 request_ = 0;
};
