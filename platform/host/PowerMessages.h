#pragma once

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QDBusUnixFileDescriptor>
#include <QObject>

// Tells of the system's sleep and wake, from the login manager. The system waits with sleeping, for
// some seconds at most, until it is allowed to. Where there is no login manager, nothing is told.
class PowerMessages : public QObject
{
    Q_OBJECT
public:
    explicit PowerMessages(const QDBusConnection &bus = QDBusConnection::systemBus());

    // Only what was last asked can be allowed.
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
    QDBusUnixFileDescriptor delay_; // sleep is delayed as long as it is open
    quint64 request_ = 0;
};
