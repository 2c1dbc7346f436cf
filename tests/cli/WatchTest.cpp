// SPDX-License-Identifier: Apache-2.0
#include "tests/support/VirtualDisk.h"
#include "tests/support/VirtualInterface.h"

#include <QElapsedTimer>
#include <QJsonDocument>
#include <QJsonObject>
#include <gtest/gtest.h>
#include <signal.h>

namespace {
constexpr int patience = 20'000; // milliseconds

// A running "vandrel-cli watch".
class WatchLiveDevice : public testing::Test
{
protected:
    void start(const QStringList &arguments)
    {
        watch_.start(QStringLiteral(VANDREL_CLI),
                     QStringList{QStringLiteral("watch"), QStringLiteral("--format"),
                                 QStringLiteral("ndjson")} +
                         arguments);
        ASSERT_TRUE(watch_.waitForStarted());
        QElapsedTimer timer;
        timer.start();
        while (!errors_.contains("Watching") && !timer.hasExpired(patience) &&
               watch_.state() == QProcess::Running) {
            watch_.waitForReadyRead(50);
            errors_ += watch_.readAllStandardError();
        }
        ASSERT_TRUE(errors_.contains("Watching")) << errors_.constData();
    }
    // The next line about a device whose path ends with the name.
    QJsonObject next(const QByteArray &name)
    {
        QElapsedTimer timer;
        timer.start();
        while (!timer.hasExpired(patience)) {
            while (watch_.canReadLine()) {
                const QJsonObject line = QJsonDocument::fromJson(watch_.readLine()).object();
                if (line[QLatin1String("kernelPath")].toString().endsWith(
                        u'/' + QString::fromLatin1(name)))
                    return line;
            }
            watch_.waitForReadyRead(50);
        }
        return {};
    }
    static std::string eventOf(const QJsonObject &line)
    {
        return line[QLatin1String("event")].toString().toStdString();
    }
    void interrupt()
    {
        kill(static_cast<pid_t>(watch_.processId()), SIGINT);
        ASSERT_TRUE(watch_.waitForFinished(patience));
        EXPECT_EQ(watch_.exitStatus(), QProcess::NormalExit);
    }

    QProcess watch_;
    QByteArray errors_;
};

TEST_F(WatchLiveDevice, AppearsAndGoes)
{
    start({});
    QByteArray name;
    {
        const VirtualInterface interface;
        if (!interface.exists())
            GTEST_SKIP() << VirtualInterface::missing;
        name = interface.name();
        const QJsonObject line = next(name);
        EXPECT_EQ(eventOf(line), "appeared");
        EXPECT_EQ(line[QLatin1String("path")].toString().toStdString(),
                  "DxService:/virtual/net/" + name.toStdString());
    }
    EXPECT_EQ(eventOf(next(name)), "gone");
    interrupt();
    EXPECT_EQ(watch_.exitCode(), 0);
}

TEST_F(WatchLiveDevice, ShowsPropertiesOfWhatAFilterFinds)
{
    start({QStringLiteral("--properties"), QStringLiteral("--where"),
           QStringLiteral("class ~ DxBlock")});
    const VirtualInterface interface; // no match
    VirtualDisk disk;
    if (!disk.exists())
        GTEST_SKIP() << VirtualDisk::missing;
    const QByteArray name = disk.name();
    EXPECT_EQ(eventOf(next(name)), "appeared");
    disk.remove();
    EXPECT_EQ(eventOf(next(name)), "gone");
    interrupt();
    EXPECT_FALSE(watch_.readAllStandardOutput().contains(interface.name() + '"'));
}

TEST_F(WatchLiveDevice, EndsAfterItsTime)
{
    start({QStringLiteral("--for"), QStringLiteral("0.2"), QStringLiteral("--where"),
           QStringLiteral("name == 'nothing has this name'")});
    ASSERT_TRUE(watch_.waitForFinished(patience));
    EXPECT_EQ(watch_.exitCode(), 1);
    EXPECT_EQ(watch_.readAllStandardOutput(), "");
}
} // namespace
