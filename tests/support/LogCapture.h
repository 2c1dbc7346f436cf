// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QStringList>

// Captures the log while it exists, instead of printing it. One at a time.
class LogCapture
{
public:
    LogCapture();
    ~LogCapture();
    LogCapture(const LogCapture &) = delete;
    LogCapture &operator=(const LogCapture &) = delete;

    const QStringList &messages() const { return messages_; }
    QStringList take() { return std::exchange(messages_, {}); }

private:
    static void keep(QtMsgType type, const QMessageLogContext &context, const QString &message);

    static LogCapture *current;
    QStringList messages_;
};
