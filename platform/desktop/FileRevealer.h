// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QDBusConnection>

// Reveals files through the file manager on the session bus, else opens the folder with the
// desktop's default program; beeps when there is none.
namespace FileRevealer {
// Returns immediately.
void reveal(const QString &file, const QDBusConnection &bus = QDBusConnection::sessionBus());
} // namespace FileRevealer
