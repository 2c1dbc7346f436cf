// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QDBusConnection>
#include <QProcess>
#include <QStandardPaths>

// A private message bus for a test.
class PrivateBus
{
public:
    static bool isAvailable()
    {
        return !QStandardPaths::findExecutable(QStringLiteral("dbus-daemon")).isEmpty();
    }

    PrivateBus()
    {
        daemon_.start(QStringLiteral("dbus-daemon"),
                      {QStringLiteral("--session"), QStringLiteral("--nofork"),
                       QStringLiteral("--nopidfile"), QStringLiteral("--print-address=1")});
        if (daemon_.waitForReadyRead())
            address_ = QString::fromUtf8(daemon_.readLine().trimmed());
    }
    ~PrivateBus()
    {
        daemon_.terminate();
        daemon_.waitForFinished();
    }
    QDBusConnection connect(const char *name) const
    {
        return QDBusConnection::connectToBus(address_, QString::fromLatin1(name));
    }

private:
    QProcess daemon_;
    QString address_;
};
