// SPDX-License-Identifier: Apache-2.0
#include "app/RunningInstance.h"

#include <QCryptographicHash>
#include <QDeadlineTimer>
#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocalSocket>
#include <QLockFile>
#include <QTimer>
#include <sys/socket.h>
#include <unistd.h>

namespace {
using namespace std::chrono_literals;

const QByteArray greeting = "Vandrel 1\n";
const QByteArray taken = "taken\n";
const QString filesKey = QStringLiteral("open");
const QString newWindowKey = QStringLiteral("newWindow");
const QString tokenKey = QStringLiteral("activation");
constexpr auto clientPatience = 5s;
constexpr auto probePatience = 200ms;
const char *const tokenVariable = "XDG_ACTIVATION_TOKEN";

// In a shared folder, another user may have created the socket.
bool belongsToUser(const QLocalSocket &socket)
{
    ucred peer{};
    socklen_t size = sizeof peer;
    return getsockopt(static_cast<int>(socket.socketDescriptor()), SOL_SOCKET, SO_PEERCRED, &peer,
                      &size) == 0 &&
           peer.uid == getuid();
}

// Null on a timeout.
QByteArray readLine(QLocalSocket &socket, const QDeadlineTimer &deadline)
{
    while (!socket.canReadLine()) {
        if (!socket.waitForReadyRead(static_cast<int>(deadline.remainingTime())))
            return {};
    }
    return socket.readLine();
}

QByteArray messageFor(const QStringList &files)
{
    const QJsonObject message{{filesKey, QJsonArray::fromStringList(files)},
                              {newWindowKey, files.isEmpty()},
                              {tokenKey, qEnvironmentVariable(tokenVariable)}};
    return QJsonDocument(message).toJson(QJsonDocument::Compact) + '\n';
}

// Empty unless all are absolute paths.
QStringList filesIn(const QJsonObject &message)
{
    QStringList files;
    for (const auto &value : message[filesKey].toArray()) {
        files.append(value.toString());
        if (!QDir::isAbsolutePath(files.last()) || files.last().contains(QChar::Null))
            return {};
    }
    return files;
}

// A socket without a listener is left over from a crashed copy.
bool isListenedTo(const QString &socket)
{
    QLocalSocket probe;
    probe.connectToServer(socket);
    return probe.waitForConnected(static_cast<int>(probePatience.count())) ||
           (probe.error() != QLocalSocket::ConnectionRefusedError &&
            probe.error() != QLocalSocket::ServerNotFoundError);
}
} // namespace

QString RunningInstance::socketPath()
{
    const QByteArray user = QByteArray::number(getuid());
    const QByteArray display = qgetenv("DISPLAY") + '\0' + qgetenv("WAYLAND_DISPLAY");
    const QByteArray digest =
        QCryptographicHash::hash(user + '\0' + display, QCryptographicHash::Sha256).toHex();
    const QString runtimeFolder = qEnvironmentVariable("XDG_RUNTIME_DIR");
    return (runtimeFolder.isEmpty() ? QDir::tempPath() : runtimeFolder) +
           QStringLiteral("/vandrel-%1-%2")
               .arg(QLatin1String(user), QLatin1String(digest.left(16)));
}

bool RunningInstance::handOver(const QStringList &files, const QString &socket,
                               std::chrono::milliseconds patience)
{
    const QByteArray message = messageFor(files);
    if (message.size() > maxMessageSize)
        return false;
    const QDeadlineTimer deadline(patience);
    QLocalSocket server;
    server.connectToServer(socket);
    if (!server.waitForConnected(static_cast<int>(deadline.remainingTime())) ||
        !belongsToUser(server))
        return false;
    // A copy that hangs sends no greeting, and must not open the files later.
    if (readLine(server, deadline) != greeting)
        return false;
    server.write(message);
    return readLine(server, deadline) == taken;
}

RunningInstance::RunningInstance()
{
    server_.setSocketOptions(QLocalServer::UserAccessOption);
    connect(&server_, &QLocalServer::newConnection, this, &RunningInstance::greetClients);
}

bool RunningInstance::listen(const QString &socket)
{
    QLockFile lock(socket + QStringLiteral(".lock")); // two copies may start together
    if (!lock.tryLock(probePatience) || isListenedTo(socket))
        return false;
    QLocalServer::removeServer(socket);
    return server_.listen(socket);
}

void RunningInstance::greetClients()
{
    while (QLocalSocket *const client = server_.nextPendingConnection()) {
        client->setReadBufferSize(maxMessageSize + 1);
        connect(client, &QLocalSocket::readyRead, this, [this, client] { receive(*client); });
        connect(client, &QLocalSocket::disconnected, client, &QObject::deleteLater);
        QTimer::singleShot(clientPatience, client, [client] { client->abort(); });
        client->write(greeting);
    }
}

void RunningInstance::receive(QLocalSocket &client)
{
    if (!client.canReadLine()) {
        if (client.bytesAvailable() > maxMessageSize)
            client.abort();
        return;
    }
    const QJsonObject message = QJsonDocument::fromJson(client.readLine()).object();
    const QStringList files = filesIn(message);
    client.disconnect(this); // one message for each client
    if (files.isEmpty() && !message[newWindowKey].toBool()) {
        client.abort();
        return;
    }
    client.write(taken);
    client.disconnectFromServer();
    if (const QString token = message[tokenKey].toString(); !token.isEmpty())
        qputenv(tokenVariable, token.toUtf8()); // lets the window be raised
    Q_EMIT filesReceived(files);
}
