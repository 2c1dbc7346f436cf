// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/linux/LinuxRegistryService.h"
#include "store/TavDataStore.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <fcntl.h>
#include <random>
#include <sys/stat.h>

// Captures of trees in which some devices do not answer: one of their attributes is a pipe without
// a writer. All others must be read, these must be listed, and read once they answer.
class SilentDevices
{
public:
    explicit SilentDevices(std::mt19937 &random)
        : random_(random)
    {}

    // Checks one tree. Returns the problem, or null.
    QString step()
    {
        using namespace std::chrono_literals;
        const Tree tree(random_); // outlives who reads it
        const bool interrupts = random_() % 2 == 0;
        const auto service = *LinuxRegistryService::create(
            tree.sys(), {.patience = 500ms, .interrupts = interrupts});
        const auto store = TavDataStore::initFromDxRegistry(*service);
        ++captures_;
        if (sorted(store->incompleteObjects()) != tree.silent())
            return problem(*store, "a capture");
        store->update();
        if (sorted(store->incompleteObjects()) != tree.silent())
            return problem(*store, "an update");
        tree.answer();
        store->updateTryingAgain();
        if (!store->incompleteObjects().isEmpty())
            return problem(*store, "another try");
        return {};
    }
    quint64 captures() const { return captures_; }

private:
    class Tree
    {
    public:
        explicit Tree(std::mt19937 &random)
        {
            constexpr int devices = 40;
            constexpr int maxSilent = 6;
            const auto silent = random() % maxSilent;
            for (int i = 0; i < devices; ++i) {
                const QString path = QStringLiteral("devices/d%1").arg(i);
                QDir().mkpath(sys() + u'/' + path);
                write(path + QStringLiteral("/uevent"));
                write(path + QStringLiteral("/vendor"));
                if (random() % devices < silent)
                    addPipe(path);
            }
            silent_.sort();
        }

        QString sys() const { return folder_.filePath(QStringLiteral("sys")); }
        const QStringList &silent() const { return silent_; }
        // Reads that were given up must end, too: their threads must not accumulate.
        void answer() const
        {
            for (const QString &path : silent_) {
                const QString file = sys() + u'/' + path + pipeName;
                const QString aside = file + QStringLiteral("-was");
                QFile::rename(file, aside);
                write(path + pipeName);
                const int writer = open(QFile::encodeName(aside).constData(), O_RDWR | O_NONBLOCK);
                close(writer);
                QFile::remove(aside);
            }
        }

    private:
        static inline const QString pipeName = QStringLiteral("/state");

        void write(const QString &path) const
        {
            QFile file(sys() + u'/' + path);
            if (file.open(QIODevice::WriteOnly))
                file.write("7\n");
        }
        void addPipe(const QString &path)
        {
            const QString pipe = sys() + u'/' + path + pipeName;
            if (mkfifo(QFile::encodeName(pipe).constData(), 0600) == 0)
                silent_.append(path);
        }

        QTemporaryDir folder_;
        QStringList silent_;
    };

    static QStringList sorted(QStringList list)
    {
        list.sort();
        return list;
    }
    static QString problem(const TavDataStore &store, const char *where)
    {
        return QStringLiteral("%1 names the wrong devices as silent: %2")
            .arg(QString::fromLatin1(where), store.incompleteObjects().join(u' '));
    }

    std::mt19937 &random_;
    quint64 captures_ = 0;
};
