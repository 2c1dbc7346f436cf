// SPDX-License-Identifier: Apache-2.0
#include "store/DataStoreDecoder.h"
#include "tests/support/MadeTree.h"
#include "tests/support/QtPrinters.h"
#include "tests/support/StorePrinter.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {
const QString program = QStringLiteral(VANDREL_PROGRAM);
const QString fixture = QStringLiteral(VANDREL_SOURCE_DIR "/tests/fixtures/synthetic/sys");

class CaptureCommand : public testing::Test
{
protected:
    struct Result
    {
        int code;
        QByteArray output;
        QByteArray errors;
    };

    // Like a script on a server: without a display and without a platform plugin.
    Result run(const QStringList &command)
    {
        auto environment = QProcessEnvironment::systemEnvironment();
        for (const char *name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
            environment.remove(QString::fromLatin1(name));
        QProcess process;
        process.setProcessEnvironment(environment);
        process.start(command.constFirst(), command.mid(1));
        process.waitForFinished();
        EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
        return {process.exitCode(), process.readAllStandardOutput(),
                process.readAllStandardError()};
    }
    Result capture(const QString &file, const QString &sysfs = fixture)
    {
        return run({program, QStringLiteral("--sysfs"), sysfs, QStringLiteral("--capture"), file});
    }
    // $1: the program, $2: a sysfs tree, $3: a file
    Result shell(const QString &script)
    {
        return run({QStringLiteral("sh"), QStringLiteral("-c"), script, QStringLiteral("sh"),
                    program, fixture, path("out")});
    }
    static QByteArray contentOf(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    QString path(const char *name) const { return folder_.filePath(QString::fromLatin1(name)); }

    QTemporaryDir folder_;
};

TEST_F(CaptureCommand, WritesASnapshotWithoutADisplay)
{
    for (const QString &file : {path("out"), QStringLiteral("-")}) {
        SCOPED_TRACE(qPrintable(file));
        const Result result = capture(file);
        EXPECT_EQ(result.code, 0);
        EXPECT_EQ(result.errors, "");
        const auto store = DataStoreDecoder::decode(
            file == QLatin1String("-") ? result.output : contentOf(file) + result.output);
        ASSERT_TRUE(store);
        EXPECT_GT(store->registryEntries().size(), 10U);
    }
}

TEST_F(CaptureCommand, ReportsFailuresByExitCodeAndMessage)
{
    const auto expectFailure = [](const Result &result, int code, const char *message) {
        EXPECT_EQ(result.code, code) << message;
        EXPECT_EQ(result.output, "");
        EXPECT_TRUE(result.errors.contains(message)) << result.errors.constData();
    };
    expectFailure(capture(path("out"), path("nowhere")), 1, "nowhere");
    expectFailure(capture(QString()), 64, "--capture needs a file");
    expectFailure(run({program, QStringLiteral("--capture")}), 64, "--help");
    expectFailure(capture(path("no/folder")), 2, "No such file or directory");
    expectFailure(capture(path("")), 2, "It is a folder");
    ASSERT_EQ(shell(QStringLiteral("mkfifo \"$3\"")).code, 0);
    expectFailure(capture(path("out")), 2, "not a regular file");
    expectFailure(shell(QStringLiteral("\"$1\" --sysfs \"$2\" --capture - > /dev/full")), 2,
                  "No space");
}

TEST_F(CaptureCommand, NamesWhatDidNotAnswerAndKeepsTheRest)
{
    MadeTree made;
    made.file("devices/slow/uevent", "");
    made.file("devices/slow/zeal", "7");
    made.pipe("devices/slow/blocks");
    const Result result = capture(path("out"), made.sys());
    EXPECT_EQ(result.code, 3);
    EXPECT_TRUE(result.errors.contains("devices/slow")) << result.errors.toStdString();
    const auto store = DataStoreDecoder::decode(contentOf(path("out")));
    ASSERT_TRUE(store);
    EXPECT_EQ(store->incompleteObjects(), QStringList{QStringLiteral("devices/slow")});
}

TEST_F(CaptureCommand, LeavesTheOldFileWhenTheNewOneDoesNotFit)
{
    QFile old(path("out"));
    ASSERT_TRUE(old.open(QIODevice::WriteOnly) && old.write("old") == 3);
    old.close();
    const Result full = shell(QStringLiteral("trap '' XFSZ; ulimit -f 1; "
                                             "\"$1\" --sysfs \"$2\" --capture \"$3\""));
    EXPECT_EQ(full.code, 2);
    EXPECT_TRUE(full.errors.contains("File too large")) << full.errors.constData();
    EXPECT_EQ(contentOf(path("out")), "old");
    EXPECT_EQ(QDir(folder_.path()).entryList(QDir::Files), QStringList{QStringLiteral("out")});
}
} // namespace
