#include "model/linux/SysfsRoot.h"

#include <QCoreApplication>
#include <QFile>
#include <algorithm>
#include <dirent.h>
#include <fcntl.h>
#include <limits.h>
#include <linux/magic.h>
#include <memory>
#include <sys/stat.h>
#include <sys/vfs.h>

namespace {
constexpr int directoryFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;

QString translate(const char *text)
{
    return QCoreApplication::translate("SysfsRoot", text);
}

std::optional<SysfsRoot::EntryType> entryType(int directory, const dirent &entry)
{
    mode_t mode = DTTOIF(entry.d_type);
    if (entry.d_type == DT_UNKNOWN) {
        struct stat status;
        if (fstatat(directory, entry.d_name, &status, AT_SYMLINK_NOFOLLOW) != 0)
            return std::nullopt;
        mode = status.st_mode & S_IFMT;
    }
    switch (mode) {
    case S_IFDIR:
        return SysfsRoot::EntryType::Directory;
    case S_IFLNK:
        return SysfsRoot::EntryType::Link;
    case S_IFREG:
    case S_IFIFO: // recorded trees may have one where a read would wait
        return SysfsRoot::EntryType::File;
    default:
        return std::nullopt;
    }
}
} // namespace

std::optional<SysfsRoot> SysfsRoot::open(const QByteArray &folder, QString *error)
{
    SysfsRoot root;
    root.folder_ = folder;
    root.descriptor_ =
        FileDescriptor(::open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!root.descriptor_) {
        *error = translate("Cannot open the sysfs folder \"%1\": %2.")
                     .arg(QFile::decodeName(folder), qt_error_string(errno));
        return std::nullopt;
    }
    struct stat status;
    if (fstatat(root.descriptor_.get(), "devices", &status, 0) != 0 || !S_ISDIR(status.st_mode)) {
        *error = translate("\"%1\" is no sysfs tree: it has no folder \"devices\".")
                     .arg(QFile::decodeName(folder));
        return std::nullopt;
    }
    struct statfs filesystem;
    root.isKernels_ =
        fstatfs(root.descriptor_.get(), &filesystem) == 0 && filesystem.f_type == SYSFS_MAGIC;
    return root;
}

FileDescriptor SysfsRoot::openDirectory(const QByteArray &path) const
{
    return FileDescriptor(
        openat(descriptor_.get(), path.isEmpty() ? "." : path.constData(), directoryFlags));
}

std::vector<SysfsRoot::Entry> SysfsRoot::list(int directory)
{
    std::vector<Entry> entries;
    // The stream closes what it is given.
    const int duplicate = fcntl(directory, F_DUPFD_CLOEXEC, 0);
    const std::unique_ptr<DIR, int (*)(DIR *)> stream(fdopendir(duplicate), closedir);
    if (!stream) {
        if (duplicate >= 0)
            ::close(duplicate);
        return entries;
    }
    while (const dirent *entry = readdir(stream.get())) {
        const QByteArray name(entry->d_name);
        if (name == "." || name == "..")
            continue;
        if (const auto type = entryType(directory, *entry))
            entries.push_back({name, entry->d_ino, *type});
    }
    std::sort(entries.begin(), entries.end(),
              [](const Entry &a, const Entry &b) { return a.name < b.name; });
    return entries;
}

QByteArray SysfsRoot::readLink(int directory, const QByteArray &name)
{
    char buffer[PATH_MAX];
    const ssize_t length = readlinkat(directory, name.constData(), buffer, sizeof buffer);
    return length > 0 ? QByteArray(buffer, length) : QByteArray();
}

QByteArray SysfsRoot::resolveLink(const QByteArray &directoryPath, const QByteArray &target)
{
    if (target.startsWith('/'))
        return {};
    QByteArray path = directoryPath;
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
    return path;
}
