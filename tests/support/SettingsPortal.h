// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/support/PrivateBus.h"

#include <QDBusMessage>
#include <QDBusVariant>
#include <QDBusVirtualObject>

// A fake settings portal of the desktop.
class SettingsPortal : public QDBusVirtualObject
{
public:
    static constexpr const char *appearance = "org.freedesktop.appearance";

    explicit SettingsPortal(QDBusConnection bus)
        : bus_(std::move(bus))
    {
        bus_.registerVirtualObject(path(), this);
    }
    ~SettingsPortal() override { bus_.unregisterObject(path()); }
    bool start() { return bus_.registerService(QStringLiteral("org.freedesktop.portal.Desktop")); }

    QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override
    {
        const QVariant value = QVariant::fromValue(QDBusVariant(scheme));
        if (message.interface() != interface() ||
            message.arguments() != QVariantList{QString::fromLatin1(appearance), key()})
            return false;
        if (message.member() == QLatin1String("ReadOne") && !isOld)
            connection.send(message.createReply(value));
        else if (message.member() == QLatin1String("Read"))
            connection.send(message.createReply(QVariant::fromValue(QDBusVariant(value))));
        else
            connection.send(message.createErrorReply(QDBusError::UnknownMethod, {}));
        return true;
    }
    void change(const char *group, uint value)
    {
        QDBusMessage signal =
            QDBusMessage::createSignal(path(), interface(), QStringLiteral("SettingChanged"));
        signal << QString::fromLatin1(group) << key() << QVariant::fromValue(QDBusVariant(value));
        bus_.send(signal);
    }

    uint scheme = 0;    // the value to read
    bool isOld = false; // has one method only

private:
    static QString path() { return QStringLiteral("/org/freedesktop/portal/desktop"); }
    static QString interface() { return QStringLiteral("org.freedesktop.portal.Settings"); }
    static QString key() { return QStringLiteral("color-scheme"); }

    QDBusConnection bus_;
};
