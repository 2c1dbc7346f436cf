// SPDX-License-Identifier: Apache-2.0
#include "model/linux/DriverBundles.h"

#include "tests/support/QtPrinters.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {
const QString modules = QStringLiteral("/lib/modules/6.0.0-test");

// Builds the index of a folder of modules as a distribution does. Returns the folder.
QString indexedModules(const QTemporaryDir &root, const QStringList &files)
{
    for (const QString &file : files) {
        const QString path = root.path() + modules + u'/' + file;
        QDir().mkpath(QFileInfo(path).path());
        QFile::copy(QStringLiteral("/bin/true"), path); // the index needs some ELF file
    }
    QProcess depmod;
    depmod.start(QStringLiteral("/sbin/depmod"),
                 {QStringLiteral("-b"), root.path(), QDir(root.path() + modules).dirName()});
    return depmod.waitForFinished() && depmod.exitCode() == 0 ? root.path() + modules : QString();
}
} // namespace

TEST(DriverBundles, FindTheFileOfAModuleByTheNameThatTheKernelUses)
{
    const QTemporaryDir root;
    const QString folder = indexedModules(root, {QStringLiteral("kernel/drivers/net/sample-net.ko"),
                                                 QStringLiteral("updates/other.ko")});
    if (folder.isNull())
        GTEST_SKIP() << "depmod is needed to index a folder of modules";
    const DriverBundles bundles(folder);
    EXPECT_EQ(bundles.fileOf(QStringLiteral("sample_net")),
              folder + QLatin1String("/kernel/drivers/net/sample-net.ko"));
    EXPECT_EQ(bundles.fileOf(QStringLiteral("other")), folder + QLatin1String("/updates/other.ko"));
    EXPECT_TRUE(bundles.fileOf(QStringLiteral("absent")).isNull());
    for (const char *const hostile : {"../updates/other", "", "other.ko", "a b"})
        EXPECT_TRUE(bundles.fileOf(QLatin1String(hostile)).isNull()) << hostile;
}
