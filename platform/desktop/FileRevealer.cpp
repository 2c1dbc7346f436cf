// SPDX-License-Identifier: Apache-2.0
#include "platform/desktop/FileRevealer.h"

#include "platform/PlatformLogging.h"
#include "platform/host/SystemBeep.h"

#include <QCoreApplication>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDesktopServices>
#include <QFileInfo>
#include <QUrl>

namespace {
void openFolder(const QString &file)
{
    if (!QDesktopServices::openUrl(QUrl::fromLocalFile(QFileInfo(file).absolutePath())))
        SystemBeep::beep();
}
} // namespace

void FileRevealer::reveal(const QString &file, const QDBusConnection &bus)
{
    if (!bus.isConnected()) { // there would be no reply
        openFolder(file);
        return;
    }
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.FileManager1"),
        QStringLiteral("/org/freedesktop/FileManager1"),
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("ShowItems"));
    const QString item = QUrl::fromLocalFile(file).toString(QUrl::FullyEncoded);
    call << QStringList{item} << QString(); // no startup identifier
    auto *const answer = new QDBusPendingCallWatcher(bus.asyncCall(call), qApp);
    QObject::connect(answer, &QDBusPendingCallWatcher::finished, qApp, [answer, file] {
        answer->deleteLater();
        const QDBusPendingReply<> reply = *answer;
        if (!reply.isError())
            return;
        qCDebug(platformLog, "No file manager reveals files: %ls",
                qUtf16Printable(reply.error().message()));
        openFolder(file);
    });
}
