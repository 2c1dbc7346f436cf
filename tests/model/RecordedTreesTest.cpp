#include "tests/support/RecordedTrees.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>

TEST(RecordedTrees, AreUnpackedOnceFromTheFolderGiven)
{
    const QTemporaryDir folder;
    const QDir dir(folder.path());
    ASSERT_TRUE(dir.mkpath(QStringLiteral("made/sys/devices")));
    const QString archive =
        folder.filePath(QStringLiteral("made-%1.tar.xz").arg(QCoreApplication::applicationPid()));
    ASSERT_EQ(QProcess::execute(QStringLiteral("tar"),
                                {QStringLiteral("-cJf"), archive, QStringLiteral("-C"),
                                 folder.filePath(QStringLiteral("made")), QStringLiteral("sys")}),
              0);
    qputenv("VANDREL_SYSFS_TREES", folder.path().toUtf8());
    const QStringList names = RecordedTrees::names();
    ASSERT_EQ(names.size(), 1);
    const QString tree = RecordedTrees::folder(names.constFirst());
    EXPECT_TRUE(QDir(tree + QStringLiteral("/sys/devices")).exists());
    EXPECT_EQ(RecordedTrees::folder(names.constFirst()), tree);
    EXPECT_TRUE(RecordedTrees::folder(QStringLiteral("absent")).isNull());

    QFile damaged(folder.filePath(QStringLiteral("damaged.tar.xz")));
    ASSERT_TRUE(damaged.open(QIODevice::WriteOnly));
    damaged.write("no archive");
    damaged.close();
    EXPECT_TRUE(RecordedTrees::folder(QStringLiteral("damaged")).isNull());
    qunsetenv("VANDREL_SYSFS_TREES");
    QDir(tree).removeRecursively();
}
