#include "tests/support/RecordedTrees.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>

namespace {
const QString suffix = QStringLiteral(".tar.xz");

QString archiveFolder()
{
    const QString given = qEnvironmentVariable("VANDREL_SYSFS_TREES");
    return given.isEmpty() ? QStringLiteral(VANDREL_SOURCE_DIR "/../shared/sysfs") : given;
}

bool unpack(const QString &archive, const QString &folder)
{
    QProcess tar;
    tar.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    tar.start(QStringLiteral("tar"),
              {QStringLiteral("-xJf"), archive, QStringLiteral("-C"), folder});
    constexpr int patience = 120'000;
    return tar.waitForFinished(patience) && tar.exitStatus() == QProcess::NormalExit &&
           tar.exitCode() == 0;
}
} // namespace

QString RecordedTrees::folder(const QString &name)
{
    const QFileInfo archive(archiveFolder() + u'/' + name + suffix);
    if (!archive.isFile())
        return {};
    const QDir cache(QStringLiteral(VANDREL_BINARY_DIR "/recorded-trees"));
    const QString unpacked =
        cache.filePath(name + u'-' + QString::number(archive.lastModified().toSecsSinceEpoch()));
    if (QFileInfo::exists(unpacked))
        return unpacked;
    // Tests run side by side: each unpacks apart, and the first to finish sets the folder.
    cache.mkpath(QStringLiteral("."));
    QTemporaryDir work(cache.filePath(QStringLiteral("XXXXXX")));
    const QString tree = work.filePath(name);
    if (!QDir().mkpath(tree) || !unpack(archive.absoluteFilePath(), tree))
        return {};
    QDir().rename(tree, unpacked);
    return QFileInfo::exists(unpacked) ? unpacked : QString();
}

QString RecordedTrees::missingMessage()
{
    return QStringLiteral("no recorded trees in %1 (VANDREL_SYSFS_TREES names another folder)")
        .arg(QDir::cleanPath(archiveFolder()));
}
