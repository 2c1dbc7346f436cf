#pragma once

#include <QByteArray>

// The files that are to take the place of others once they are complete. A save that is killed may
// leave one behind. Who writes one holds a lock of it (flock).
namespace SaveLeftovers {
// A name for the file that replaces another, such as ".desk.vandrel.saving-kQzRwa".
QByteArray newName(const QByteArray &replaced);
// Removes from the folder those for the replaced file that are this user's own, that nobody writes,
// and that are a minute old: so long none is without its lock.
void remove(const QByteArray &folder, const QByteArray &replaced);
} // namespace SaveLeftovers
