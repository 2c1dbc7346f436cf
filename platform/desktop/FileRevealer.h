#pragma once

#include <QDBusConnection>

// Reveals files by asking the file manager on the session bus. Where none answers, opens the file's
// folder with what the desktop has for that; beeps when there is nothing.
namespace FileRevealer {
// Returns at once.
void reveal(const QString &file, const QDBusConnection &bus = QDBusConnection::sessionBus());
} // namespace FileRevealer
