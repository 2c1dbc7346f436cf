// SPDX-License-Identifier: Apache-2.0
#include "app/RunningInstance.h"

#include "platform/documents/RecentDocuments.h"
#include "tests/support/EventLoop.h"
#include "tests/support/QtPrinters.h"
#include "tests/support/SmallStore.h"

#include <QFile>
#include <QLocalSocket>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QThread>
#include <gtest/gtest.h>

namespace {
class RunningInstanceTest : public testing::Test
{
protected:
    QString path(const char *name) const { return folder_.filePath(QString::fromUtf8(name)); }
    // While this copy's event loop runs.
    bool handOver(const QStringList &files) const
    {
        bool isTaken = false;
        const std::unique_ptr<QThread> other(
            QThread::create([&] { isTaken = RunningInstance::handOver(files, socket_); }));
        other->start();
        EXPECT_TRUE(waitFor([&] { return other->isFinished(); }));
        return isTaken;
    }
    QProcess *run(const QStringList &arguments)
    {
        auto environment = QProcessEnvironment::systemEnvironment();
        for (const char *name : {"XDG_RUNTIME_DIR", "XDG_CONFIG_HOME", "XDG_DATA_HOME"})
            environment.insert(QString::fromUtf8(name), folder_.path());
        environment.insert(QStringLiteral("DISPLAY"), QStringLiteral(":none"));
        environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), QStringLiteral("none:"));
        processes_.push_back(std::make_unique<QProcess>());
        QProcess *const process = processes_.back().get();
        process->setProcessEnvironment(environment);
        process->setWorkingDirectory(folder_.path());
        process->start(QStringLiteral(VANDREL_PROGRAM), arguments);
        return process;
    }
    bool isListening() const
    {
        return !QDir(folder_.path())
                    .entryList({QStringLiteral("vandrel-*")}, QDir::System)
                    .isEmpty();
    }
    // Messages of all copies.
    std::string recentFiles() const
    {
        QFile file(path("vandrel/") + RecentDocuments::domain() + QStringLiteral(".json"));
        return file.open(QIODevice::ReadOnly) ? file.readAll().toStdString() : std::string();
    }
    bool knows(const char *file) const
    {
        return recentFiles().find(path(file).toStdString()) != std::string::npos;
    }
    void TearDown() override
    {
        for (const auto &process : processes_) {
            process->terminate();
            process->waitForFinished();
        }
    }

    QTemporaryDir folder_;
    const QString socket_ = path("socket");
    std::vector<std::unique_ptr<QProcess>> processes_;
};
} // namespace

TEST_F(RunningInstanceTest, TakesFilesOfLaterCopies)
{
    const QStringList files{QStringLiteral("/a b/ä\n.vandrel"), QStringLiteral("/c")};
    EXPECT_FALSE(handOver(files)); // no running copy
    QFile(socket_).open(QIODevice::WriteOnly);
    EXPECT_FALSE(handOver(files)); // the socket of a crashed copy
    RunningInstance first;
    QSignalSpy received(&first, &RunningInstance::filesReceived);
    ASSERT_TRUE(first.listen(socket_));
    EXPECT_EQ(QFile::permissions(socket_) &
                  (QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther),
              QFile::Permissions());
    EXPECT_FALSE(RunningInstance().listen(socket_)); // and leaves it to the first copy
    EXPECT_TRUE(handOver(files));
    ASSERT_EQ(received.count(), 1);
    EXPECT_EQ(received[0][0].toStringList(), files);
    EXPECT_TRUE(handOver({})); // a window
    ASSERT_EQ(received.count(), 2);
    EXPECT_TRUE(received[1][0].toStringList().isEmpty());
    EXPECT_FALSE(handOver({QString(RunningInstance::maxMessageSize, u'/')}));
}

TEST_F(RunningInstanceTest, IgnoresHostileMessages)
{
    RunningInstance instance;
    QSignalSpy received(&instance, &RunningInstance::filesReceived);
    ASSERT_TRUE(instance.listen(socket_));
    for (const QByteArray &message :
         {QByteArray("\n"), QByteArray("{\"open\": [\"relative\"]}\n"), QByteArray("[1]\n"),
          QByteArray("{\"open\": [\"/a\", 7]}\n"), QByteArray("{\"open\": [\"/\\u0000\"]}\n"),
          QByteArray(10000, '[') + '\n', QByteArray(2 * RunningInstance::maxMessageSize, 'x')}) {
        SCOPED_TRACE(message.left(40).constData());
        QLocalSocket client;
        client.connectToServer(socket_);
        client.write(message);
        EXPECT_TRUE(waitFor([&] { return client.state() == QLocalSocket::UnconnectedState; }));
    }
    EXPECT_EQ(received.count(), 0);
    EXPECT_TRUE(handOver({QStringLiteral("/a")}));
}

TEST_F(RunningInstanceTest, DoesNotWaitLongForACopyThatHangs)
{
    QLocalServer hanging; // this thread runs no event loop
    ASSERT_TRUE(hanging.listen(socket_));
    QElapsedTimer time;
    time.start();
    EXPECT_FALSE(RunningInstance::handOver({QStringLiteral("/a")}, socket_));
    EXPECT_GE(time.elapsed(), 1500);
    EXPECT_LT(time.elapsed(), 2500);
}

TEST_F(RunningInstanceTest, ProgramOpensFilesInTheCopyThatRuns)
{
    for (const char *name : {"a.vandrel", "b.vandrel", "c.vandrel"}) {
        QFile file(path(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(SmallStore::current().bytes());
    }
    const QProcess *const first = run({QStringLiteral("a.vandrel")});
    ASSERT_TRUE(waitFor([&] { return isListening(); }, 60'000));
    QProcess *const second = run({QStringLiteral("b.vandrel")});
    ASSERT_TRUE(second->waitForFinished());
    EXPECT_EQ(second->exitCode(), 0);
    EXPECT_TRUE(waitFor([&] { return knows("b.vandrel"); })) << recentFiles();
    const QProcess *const third =
        run({QStringLiteral("--new-instance"), QStringLiteral("c.vandrel")});
    EXPECT_TRUE(waitFor([&] { return knows("c.vandrel"); }, 60'000)) << recentFiles();
    EXPECT_EQ(third->state(), QProcess::Running);
    EXPECT_EQ(first->state(), QProcess::Running);
}
