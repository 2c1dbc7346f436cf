// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QLocalServer>
#include <QObject>
#include <QStringList>
#include <chrono>

class QLocalSocket;

// The running copy of the program, to which later ones on the same user's display pass files. It
// greets each client, reads one line and answers it; anything else closes the connection.
class RunningInstance : public QObject
{
    Q_OBJECT
public:
    static constexpr qint64 maxMessageSize = 256 * 1024;

    // Whether the running copy took the files, which have absolute paths; none: it opens a window.
    // Waits no longer than given, and needs no event loop.
    static bool handOver(const QStringList &files, const QString &socket = socketPath(),
                         std::chrono::milliseconds patience = std::chrono::seconds(2));
    static QString socketPath(); // of this user and display

    RunningInstance();
    // False if another copy already listens there.
    bool listen(const QString &socket = socketPath());

Q_SIGNALS:
    void filesReceived(const QStringList &files); // none: a window is wanted

private:
    void greetClients();
    void receive(QLocalSocket &client);

    QLocalServer server_;
};
