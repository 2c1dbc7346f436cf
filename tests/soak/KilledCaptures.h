// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "store/DataStoreDecoder.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTimer>
#include <random>

// Repeated captures of this machine into one file, each in a process that is killed at a random
// moment. The file must stay whole, and at most one other file may be left behind.
class KilledCaptures
{
public:
    explicit KilledCaptures(std::mt19937 &random)
        : random_(random)
    {
        killer_.setSingleShot(true);
        killer_.setTimerType(Qt::PreciseTimer);
        killer_.callOnTimeout([this] { process_.kill(); });
    }
    ~KilledCaptures()
    {
        process_.kill();
        process_.waitForFinished();
    }
    KilledCaptures(const KilledCaptures &) = delete;
    KilledCaptures &operator=(const KilledCaptures &) = delete;

    // Checks the result of the last one and starts the next. Returns the problem, or null.
    QString step()
    {
        if (process_.state() != QProcess::NotRunning)
            return {};
        const bool isFirst = duration_ == 0;
        if (started_.isValid() && isFirst)
            duration_ = started_.elapsed();
        const QString problem = started_.isValid() ? look() : QString();
        start();
        return problem;
    }
    quint64 kills() const { return kills_; }
    quint64 written() const { return written_; } // times that the file was a new one

private:
    QString file() const { return folder_.filePath(QStringLiteral("snapshot")); }

    // The first runs to its end, to measure its duration.
    void start()
    {
        started_.start();
        process_.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process_.start(QStringLiteral(VANDREL_PROGRAM), {QStringLiteral("--capture"), file()});
        if (duration_ > 0)
            killer_.start(static_cast<int>(random_() % static_cast<quint64>(duration_ + 1)));
    }
    QString look()
    {
        killer_.stop();
        kills_ += process_.exitStatus() == QProcess::CrashExit;
        const QStringList files = QDir(folder_.path()).entryList(QDir::Files | QDir::Hidden);
        if (files.size() > 2)
            return QStringLiteral("killed captures leave files: %1").arg(files.join(u' '));
        QFile snapshot(file());
        if (!snapshot.open(QIODevice::ReadOnly))
            return QStringLiteral("a killed capture took the file away");
        const QByteArray content = snapshot.readAll();
        if (content == content_)
            return {};
        content_ = content;
        ++written_;
        return DataStoreDecoder::decode(content)
                   ? QString()
                   : QStringLiteral("a killed capture left a broken file");
    }

    std::mt19937 &random_;
    QTemporaryDir folder_;
    QProcess process_;
    QTimer killer_;
    QElapsedTimer started_;
    qint64 duration_ = 0; // of the first, in milliseconds
    QByteArray content_;
    quint64 kills_ = 0;
    quint64 written_ = 0;
};
