// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QDBusConnection>
#include <QObject>

class QDBusMessage;
class QDBusVariant;

// The desktop's setting for light or dark programs, from its settings portal. Queried
// asynchronously: no preference until the answer arrives, or when there is no portal.
class ColorSchemeSetting : public QObject
{
    Q_OBJECT
public:
    enum class Scheme { NoPreference, Dark, Light };

    explicit ColorSchemeSetting(const QDBusConnection &bus = QDBusConnection::sessionBus());

    Scheme scheme() const { return scheme_; }

Q_SIGNALS:
    void changed();

private Q_SLOTS:
    void settingChanged(const QString &group, const QString &key, const QDBusVariant &value);

private:
    void ask(const QString &method);
    void setScheme(const QVariant &value);

    QDBusConnection bus_;
    Scheme scheme_ = Scheme::NoPreference;
};
