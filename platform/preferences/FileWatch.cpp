// SPDX-License-Identifier: Apache-2.0
#include "platform/preferences/FileWatch.h"

#include <QFileInfo>

namespace {
constexpr int pauseLength = 50; // milliseconds
} // namespace

FileWatch::FileWatch(const QString &file)
    : file_(file)
{
    pause_.setSingleShot(true);
    pause_.setInterval(pauseLength);
    const auto note = [this] {
        if (!pause_.isActive()) // else a busy folder would delay it forever
            pause_.start();
    };
    connect(&watcher_, &QFileSystemWatcher::directoryChanged, this, note);
    connect(&watcher_, &QFileSystemWatcher::fileChanged, this, note);
    connect(&pause_, &QTimer::timeout, this, [this] {
        rewatch();
        Q_EMIT changed();
    });
    rewatch();
}

void FileWatch::rewatch()
{
    const auto watch = [this](const QString &path, const QStringList &watched) {
        // The watcher logs warnings for missing files.
        if (!watched.contains(path) && QFileInfo::exists(path))
            watcher_.addPath(path);
    };
    watch(QFileInfo(file_).path(), watcher_.directories());
    watch(file_, watcher_.files());
}
