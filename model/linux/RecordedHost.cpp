// SPDX-License-Identifier: Apache-2.0
#include "model/linux/RecordedHost.h"

#include "model/linux/FileDescriptor.h"
#include "model/linux/ObjectNames.h"

#include <QDir>
#include <QFile>

namespace {
// The line of a small file, as a name; null without one.
QString lineOf(const FileDescriptor &folder, const char *path)
{
    constexpr qsizetype maxBytes = 1024;
    const QByteArray text =
        folder ? readSmallFile(folder.get(), path, maxBytes).split('\n').first() : QByteArray();
    const QByteArray name = ObjectNames::sanitized(QString::fromUtf8(text));
    return name.isEmpty() ? QString() : QString::fromUtf8(name);
}
} // namespace

HostInformation RecordedHost::of(const QByteArray &sysfsFolder)
{
    QDir folder(QDir::cleanPath(QDir(QFile::decodeName(sysfsFolder)).absolutePath()));
    const bool isNamed = folder.dirName() != QLatin1String("sys");
    if (!isNamed)
        folder.cdUp();
    // A tree at the top of the file system is this machine's.
    const FileDescriptor beside(isNamed || folder.isRoot()
                                    ? -1
                                    : open(QFile::encodeName(folder.path()).constData(),
                                           O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    QString name = lineOf(beside, "etc/hostname");
    if (name.isNull())
        name = lineOf(beside, "proc/sys/kernel/hostname");
    if (name.isNull())
        name = folder.dirName();
    return HostInformation::ofMachine(name, lineOf(beside, "proc/sys/kernel/arch"));
}
