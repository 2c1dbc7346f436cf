// SPDX-License-Identifier: Apache-2.0
#include "platform/desktop/FileRevealer.h"
#include "tests/support/EventLoop.h"
#include "tests/support/PrivateBus.h"

#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QDesktopServices>
#include <QTextBrowser>
#include <QUrl>
#include <gtest/gtest.h>

namespace {
const QString service = QStringLiteral("org.freedesktop.FileManager1");
const QString path = QStringLiteral("/org/freedesktop/FileManager1");
const QString file = QStringLiteral("/lib/modules/a driver #1/ünder.ko");

// Answers as a file manager.
class FileManagerService : public QDBusVirtualObject
{
public:
    explicit FileManagerService(QDBusConnection bus)
        : bus_(std::move(bus))
    {
        bus_.registerVirtualObject(path, this);
    }
    ~FileManagerService() override { bus_.unregisterObject(path); }
    bool start() { return bus_.registerService(service); }

    QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override
    {
        if (message.interface() != service || message.member() != QLatin1String("ShowItems") ||
            message.signature() != QLatin1String("ass"))
            return false;
        shown += message.arguments().constFirst().toStringList();
        connection.send(refuses ? message.createErrorReply(QDBusError::Failed, {})
                                : message.createReply());
        return true;
    }

    QStringList shown;
    bool refuses = false;

private:
    QDBusConnection bus_;
};

} // namespace

TEST(FileRevealerTest, AsksTheFileManagerOrOpensTheFolder)
{
    if (!PrivateBus::isAvailable())
        GTEST_SKIP() << "dbus-daemon is not installed";
    const PrivateBus bus;
    FileManagerService manager(bus.connect("manager"));
    const QDBusConnection client = bus.connect("client");
    QList<QUrl> opened; // folders, in place of the desktop
    QTextBrowser told;  // for its signal alone
    QObject::connect(&told, &QTextBrowser::anchorClicked,
                     [&](const QUrl &url) { opened.append(url); });
    QDesktopServices::setUrlHandler(QStringLiteral("file"), &told, "anchorClicked");
    const QUrl folder = QUrl::fromLocalFile(QStringLiteral("/lib/modules/a driver #1"));

    ASSERT_TRUE(manager.start());
    FileRevealer::reveal(file, client);
    ASSERT_TRUE(waitFor([&] { return !manager.shown.isEmpty(); }));
    EXPECT_EQ(manager.shown.constFirst(),
              QStringLiteral("file:///lib/modules/a%20driver%20%231/%C3%BCnder.ko"));
    turnEventLoopFor(20);
    EXPECT_TRUE(opened.isEmpty());

    manager.refuses = true;
    FileRevealer::reveal(file, client);
    ASSERT_TRUE(waitFor([&] { return opened.size() == 1; }));
    FileRevealer::reveal(file, QDBusConnection(QStringLiteral("no such connection")));
    EXPECT_EQ(opened, QList<QUrl>({folder, folder}));
    QDesktopServices::unsetUrlHandler(QStringLiteral("file"));
    for (const char *name : {"manager", "client"})
        QDBusConnection::disconnectFromBus(QString::fromLatin1(name));
}
