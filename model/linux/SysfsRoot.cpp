// SPDX-License-Identifier: Apache-2.0
#include "model/linux/SysfsRoot.h"

#include <QCoreApplication>
#include <QFile>
#include <algorithm>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <limits.h>
#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/vfs.h>

namespace {
QString translate(const char *text)
{
    return QCoreApplication::translate("SysfsRoot", text);
}

// None if it has vanished.
std::optional<SysfsRoot::EntryType> entryType(int directory, const dirent64 &entry)
{
    mode_t mode = DTTOIF(entry.d_type);
    if (entry.d_type == DT_UNKNOWN) {
        struct stat status;
        if (fstatat(directory, entry.d_name, &status, AT_SYMLINK_NOFOLLOW) != 0)
            return errno == ENOENT ? std::nullopt : std::optional(SysfsRoot::EntryType::File);
        mode = status.st_mode & S_IFMT;
    }
    switch (mode) {
    case S_IFDIR:
        return SysfsRoot::EntryType::Directory;
    case S_IFLNK:
        return SysfsRoot::EntryType::Link;
    case S_IFREG:
    case S_IFIFO: // recorded trees may have one where a read would block
        return SysfsRoot::EntryType::File;
    default: // a device node or socket, which sysfs never has
        return SysfsRoot::EntryType::Other;
    }
}
} // namespace

QString SysfsRootError::message() const
{
    const QString name = QFile::decodeName(folder);
    if (reason == Reason::CannotOpen)
        return translate("Cannot open the sysfs folder \"%1\": %2.")
            .arg(name, qt_error_string(errorNumber));
    return translate("\"%1\" is no sysfs tree: it has no folder \"devices\".").arg(name);
}

Result<SysfsRoot, SysfsRootError> SysfsRoot::open(const QByteArray &folder)
{
    using Reason = SysfsRootError::Reason;
    SysfsRoot root;
    root.folder_ = folder;
    root.descriptor_ =
        FileDescriptor(::open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!root.descriptor_)
        return SysfsRootError{Reason::CannotOpen, folder, errno};
    struct stat status;
    if (fstatat(root.descriptor_.get(), "devices", &status, 0) != 0 || !S_ISDIR(status.st_mode))
        return SysfsRootError{Reason::NotASysfsTree, folder};
    struct statfs filesystem;
    root.isKernels_ =
        fstatfs(root.descriptor_.get(), &filesystem) == 0 && filesystem.f_type == SYSFS_MAGIC;
    return Result<SysfsRoot, SysfsRootError>(std::move(root));
}

FileDescriptor SysfsRoot::openDirectory(const SysfsPath &path) const
{
    return opener().open(path);
}

quint64 SysfsRoot::inodeOf(const SysfsPath &path) const
{
    struct stat status;
    const auto inodeBelow = [&status](int folder, const QByteArray &its) {
        const bool exists = fstatat(folder, its.constData(), &status, AT_SYMLINK_NOFOLLOW) == 0;
        return exists ? status.st_ino : 0;
    };
    if (path.size() < PATH_MAX)
        return inodeBelow(descriptor_.get(), path.toByteArray());
    return inodeBelow(openDirectory(path.parent()).get(), path.name());
}

int SysfsRoot::list(int directory, std::vector<Entry> &entries)
{
    // Without a directory stream: creating one costs more than reading a small directory.
    constexpr std::size_t bufferSize = 16384;
    alignas(dirent64) char buffer[bufferSize];
    entries.clear();
    ssize_t size = 0;
    while ((size = getdents64(directory, buffer, bufferSize)) > 0) {
        for (ssize_t offset = 0; offset < size;) {
            const auto &entry = *reinterpret_cast<const dirent64 *>(buffer + offset);
            offset += entry.d_reclen;
            if (std::strcmp(entry.d_name, ".") == 0 || std::strcmp(entry.d_name, "..") == 0)
                continue;
            if (const auto type = entryType(directory, entry))
                entries.push_back({QByteArray(entry.d_name), entry.d_ino, *type});
        }
    }
    const int error = size < 0 ? errno : 0;
    std::sort(entries.begin(), entries.end(),
              [](const Entry &a, const Entry &b) { return a.name < b.name; });
    return error;
}

QByteArray SysfsRoot::readLink(int directory, const QByteArray &name)
{
    char buffer[PATH_MAX];
    const ssize_t length = readlinkat(directory, name.constData(), buffer, sizeof buffer);
    return length >= 0 ? QByteArray(buffer, length) : QByteArray();
}

SysfsPath SysfsRoot::resolveLink(const SysfsPath &directory, const QByteArray &target)
{
    if (target.isEmpty() || target.startsWith('/'))
        return {};
    QByteArray path = directory.toByteArray();
    for (qsizetype start = 0; start <= target.size();) {
        qsizetype end = target.indexOf('/', start);
        if (end < 0)
            end = target.size();
        const QByteArrayView component = QByteArrayView(target).sliced(start, end - start);
        start = end + 1;
        if (component.isEmpty() || component == ".")
            continue;
        if (component == "..") {
            if (path.isEmpty())
                return {};
            path.truncate(std::max<qsizetype>(path.lastIndexOf('/'), 0));
        } else {
            if (!path.isEmpty())
                path += '/';
            path += component;
        }
    }
    return SysfsPath(path);
}
