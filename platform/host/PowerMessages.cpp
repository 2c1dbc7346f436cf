// SPDX-License-Identifier: Apache-2.0
#include "platform/host/PowerMessages.h"

#include "platform/PlatformLogging.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

namespace {
const QString service = QStringLiteral("org.freedesktop.login1");
const QString path = QStringLiteral("/org/freedesktop/login1");
const QString manager = QStringLiteral("org.freedesktop.login1.Manager");
} // namespace

PowerMessages::PowerMessages(const QDBusConnection &bus)
    : bus_(bus)
{
    if (!bus_.isConnected()) {
        qCDebug(platformLog, "No system bus: sleep and wake are not followed");
        return;
    }
    bus_.connect(service, path, manager, QStringLiteral("PrepareForSleep"), this,
                 SLOT(prepareForSleep(bool)));
    watcher_.setConnection(bus_);
    watcher_.setWatchMode(QDBusServiceWatcher::WatchForRegistration);
    watcher_.addWatchedService(service);
    connect(&watcher_, &QDBusServiceWatcher::serviceRegistered, this, &PowerMessages::delaySleep);
    delaySleep();
}

void PowerMessages::allowSleep(quint64 request)
{
    if (request == request_)
        delay_ = QDBusUnixFileDescriptor();
}

void PowerMessages::prepareForSleep(bool begins)
{
    if (begins) {
        Q_EMIT willSleep(++request_);
        return;
    }
    delaySleep(); // for the next time
    Q_EMIT hasPoweredOn();
}

void PowerMessages::delaySleep()
{
    QDBusMessage call =
        QDBusMessage::createMethodCall(service, path, manager, QStringLiteral("Inhibit"));
    call.setAutoStartService(false);
    call << QStringLiteral("sleep") << QStringLiteral("Vandrel")
         << tr("Updates of the device registry stop first.") << QStringLiteral("delay");
    const quint64 request = request_;
    auto *const answer = new QDBusPendingCallWatcher(bus_.asyncCall(call), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer, request] {
        answer->deleteLater();
        const QDBusPendingReply<QDBusUnixFileDescriptor> reply = *answer;
        if (reply.isError())
            qCDebug(platformLog, "Sleep cannot be delayed: %ls",
                    qUtf16Printable(reply.error().message()));
        else if (request == request_)
            delay_ = reply.value(); // not if a sleep has begun since
    });
}

// Here, so that programs that do not use it need no D-Bus.
#include "moc_PowerMessages.cpp" // NOLINT(bugprone-suspicious-include)
