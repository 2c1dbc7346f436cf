// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

// Posted on the default notification center by a store, or by the entry that was reread.
namespace DataStoreNotifications {
inline const QString outOfDate = QStringLiteral("Data store out of date");
inline const QString changed = QStringLiteral("Data store changed");
inline const QString objectChanged = QStringLiteral("Data store object changed"); // the entry
inline const QString objectsTerminated = QStringLiteral("Data store objects terminated");
inline const QString clearedTerminatedObjects =
    QStringLiteral("Data store cleared terminated objects");
inline const QString eventsHeld = QStringLiteral("Data store held events"); // or was paused
inline const QString deviceNamesFound = QStringLiteral("Data store found device names");
} // namespace DataStoreNotifications
