#pragma once

#include <QString>

// What a store posts on the default notification center, about itself, but for the entry that
// was re-read by itself.
namespace DataStoreNotifications {
inline const QString outOfDate = QStringLiteral("Data store out of date");
inline const QString changed = QStringLiteral("Data store changed");
inline const QString objectChanged = QStringLiteral("Data store object changed"); // the entry
inline const QString objectsTerminated = QStringLiteral("Data store objects terminated");
inline const QString clearedTerminatedObjects =
    QStringLiteral("Data store cleared terminated objects");
} // namespace DataStoreNotifications
