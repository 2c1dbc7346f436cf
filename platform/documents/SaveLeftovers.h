// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>

// The temporary files of saves. A killed save may leave one behind. The writer holds a lock on it
// (flock).
namespace SaveLeftovers {
// The name of the temporary file for another, such as ".desk.vandrel.saving-kQzRwa".
QByteArray newName(const QByteArray &replaced);
// Removes the temporary files of the given file that belong to this user, are not locked and are at
// least a minute old. Younger ones may not be locked yet.
void remove(const QByteArray &folder, const QByteArray &replaced);
} // namespace SaveLeftovers
