// SPDX-License-Identifier: Apache-2.0
#include "platform/documents/SaveLeftovers.h"

#include <QRandomGenerator>
#include <algorithm>
#include <ctime>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {
constexpr QByteArrayView letters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
constexpr qsizetype randomLetters = 6;
constexpr qsizetype maxNameLength = 200; // of the replaced file, that leaves room for the rest

QByteArray beginningOfNames(const QByteArray &replaced)
{
    return '.' + replaced.left(maxNameLength) + ".saving-";
}

bool isName(QByteArrayView name, const QByteArray &beginning)
{
    return name.size() == beginning.size() + randomLetters && name.startsWith(beginning) &&
           std::all_of(name.begin() + beginning.size(), name.end(),
                       [](char c) { return letters.contains(c); });
}

bool isOwnOldFile(const struct stat &status)
{
    constexpr time_t oldAge = 60;
    return S_ISREG(status.st_mode) && status.st_uid == geteuid() && status.st_nlink == 1 &&
           status.st_mtime <= time(nullptr) - oldAge;
}

void removeUnlessWritten(int folder, const char *name)
{
    const int file = openat(folder, name, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    struct stat status;
    struct stat named;
    if (file >= 0 && fstat(file, &status) == 0 && isOwnOldFile(status) &&
        flock(file, LOCK_EX | LOCK_NB) == 0 &&
        fstatat(folder, name, &named, AT_SYMLINK_NOFOLLOW) == 0 && named.st_ino == status.st_ino &&
        named.st_dev == status.st_dev)
        unlinkat(folder, name, 0);
    if (file >= 0)
        close(file);
}
} // namespace

QByteArray SaveLeftovers::newName(const QByteArray &replaced)
{
    QByteArray name = beginningOfNames(replaced);
    for (qsizetype i = 0; i < randomLetters; ++i)
        name += letters[QRandomGenerator::global()->bounded(static_cast<int>(letters.size()))];
    return name;
}

void SaveLeftovers::remove(const QByteArray &folder, const QByteArray &replaced)
{
    const std::unique_ptr<DIR, int (*)(DIR *)> entries(opendir(folder.constData()), closedir);
    const QByteArray beginning = beginningOfNames(replaced);
    while (const dirent *entry = entries ? readdir(entries.get()) : nullptr) {
        if (isName(entry->d_name, beginning))
            removeUnlessWritten(dirfd(entries.get()), entry->d_name);
    }
}
