// SPDX-License-Identifier: Apache-2.0
#include "platform/documents/ReplacementFile.h"

#include "platform/documents/SaveLeftovers.h"

#include <QFileInfo>
#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {
constexpr int attempts = 16; // to find an unused name
constexpr mode_t modeOfNewFile = 0666;

QString withoutLinks(const QString &path)
{
    const QFileInfo info(path);
    if (info.exists())
        return info.canonicalFilePath();
    return info.isSymLink() ? info.symLinkTarget() : info.absoluteFilePath();
}

QByteArray folderOf(const QByteArray &path)
{
    return path.left(path.lastIndexOf('/') + 1);
}

QByteArray nameOf(const QByteArray &path)
{
    return path.mid(path.lastIndexOf('/') + 1);
}

QByteArray linkToOpenFile(int descriptor)
{
    return "/proc/self/fd/" + QByteArray::number(descriptor);
}
} // namespace

ReplacementFile::ReplacementFile(const QString &replaced)
    : replaced_(QFile::encodeName(withoutLinks(replaced)))
{}

ReplacementFile::~ReplacementFile()
{
    if (!path_.isEmpty())
        unlink(path_.constData());
}

bool ReplacementFile::open()
{
    SaveLeftovers::remove(folderOf(replaced_), nameOf(replaced_));
    struct stat status;
    const bool isThere = stat(replaced_.constData(), &status) == 0;
    if (isThere && access(replaced_.constData(), W_OK) != 0)
        return fail(QFileDevice::WriteError);
    if (!create())
        return fail(QFileDevice::OpenError);
    flock(file_.handle(), LOCK_EX | LOCK_NB); // without locks, leftovers stay
    if (isThere)
        fchmod(file_.handle(), status.st_mode & 0777);
    return true;
}

bool ReplacementFile::create()
{
    constexpr int flags = O_WRONLY | O_CLOEXEC;
    const bool canBeNamed = access("/proc/self/fd", X_OK) == 0;
    int file =
        canBeNamed ? ::open(folderOf(replaced_).constData(), flags | O_TMPFILE, modeOfNewFile) : -1;
    for (int i = 0; i < attempts && file < 0; ++i) {
        const QByteArray path = newPath();
        file = ::open(path.constData(), flags | O_CREAT | O_EXCL, modeOfNewFile);
        if (file >= 0)
            path_ = path;
        else if (errno != EEXIST)
            return false;
    }
    // Unbuffered, so that each write reports its own error.
    return file >= 0 && file_.open(file, QIODevice::WriteOnly | QIODevice::Unbuffered,
                                   QFileDevice::AutoCloseHandle);
}

bool ReplacementFile::commit()
{
    if (fsync(file_.handle()) != 0 && errno != EINVAL) // some file systems do not support it
        return fail(QFileDevice::WriteError);
    if (path_.isEmpty() && !giveName())
        return fail(QFileDevice::WriteError);
    if (rename(path_.constData(), replaced_.constData()) != 0)
        return fail(QFileDevice::RenameError);
    path_.clear();
    return true;
}

bool ReplacementFile::giveName()
{
    const QByteArray file = linkToOpenFile(file_.handle());
    for (int i = 0; i < attempts; ++i) {
        const QByteArray path = newPath();
        if (linkat(AT_FDCWD, file.constData(), AT_FDCWD, path.constData(), AT_SYMLINK_FOLLOW) ==
            0) {
            path_ = path;
            return true;
        }
        if (errno != EEXIST)
            return false;
    }
    return false;
}

QByteArray ReplacementFile::newPath() const
{
    return folderOf(replaced_) + SaveLeftovers::newName(nameOf(replaced_));
}

bool ReplacementFile::fail(QFileDevice::FileError error)
{
    errorString_ = qt_error_string(errno);
    error_ = error;
    return false;
}

QFileDevice::FileError ReplacementFile::error() const
{
    return error_ == QFileDevice::NoError ? file_.error() : error_;
}

QString ReplacementFile::errorString() const
{
    return error_ == QFileDevice::NoError ? file_.errorString() : errorString_;
}
