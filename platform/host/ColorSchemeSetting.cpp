// SPDX-License-Identifier: Apache-2.0
#include "platform/host/ColorSchemeSetting.h"

#include "platform/PlatformLogging.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

namespace {
const QString service = QStringLiteral("org.freedesktop.portal.Desktop");
const QString path = QStringLiteral("/org/freedesktop/portal/desktop");
const QString settings = QStringLiteral("org.freedesktop.portal.Settings");
const QString appearance = QStringLiteral("org.freedesktop.appearance");
const QString colorScheme = QStringLiteral("color-scheme");
const QString readOne = QStringLiteral("ReadOne");
const QString readOfOldPortals = QStringLiteral("Read"); // wraps its answer twice

QVariant unwrapped(QVariant value)
{
    while (value.canConvert<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value;
}
} // namespace

ColorSchemeSetting::ColorSchemeSetting(const QDBusConnection &bus)
    : bus_(bus)
{
    if (!bus_.isConnected()) {
        qCDebug(platformLog, "No session bus: the desktop's color scheme is not followed");
        return;
    }
    qRegisterMetaType<QDBusVariant>(); // connecting a slot does not register it
    bus_.connect(service, path, settings, QStringLiteral("SettingChanged"), this,
                 SLOT(settingChanged(QString, QString, QDBusVariant)));
    ask(readOne);
}

void ColorSchemeSetting::ask(const QString &method)
{
    QDBusMessage call = QDBusMessage::createMethodCall(service, path, settings, method);
    call << appearance << colorScheme;
    auto *const answer = new QDBusPendingCallWatcher(bus_.asyncCall(call), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer, method] {
        answer->deleteLater();
        const QDBusPendingReply<QDBusVariant> reply = *answer;
        if (!reply.isError())
            setScheme(reply.value().variant());
        else if (method == readOne && reply.error().type() == QDBusError::UnknownMethod)
            ask(readOfOldPortals);
        else
            qCDebug(platformLog, "The desktop's color scheme is unknown: %ls",
                    qUtf16Printable(reply.error().message()));
    });
}

void ColorSchemeSetting::settingChanged(const QString &group, const QString &key,
                                        const QDBusVariant &value)
{
    if (group == appearance && key == colorScheme)
        setScheme(value.variant());
}

void ColorSchemeSetting::setScheme(const QVariant &value)
{
    const uint number = unwrapped(value).toUInt();
    const Scheme scheme = number == 1   ? Scheme::Dark
                          : number == 2 ? Scheme::Light
                                        : Scheme::NoPreference;
    if (std::exchange(scheme_, scheme) != scheme)
        Q_EMIT changed();
}

// Here, so that programs that do not use it need no D-Bus.
#include "moc_ColorSchemeSetting.cpp" // NOLINT(bugprone-suspicious-include)
