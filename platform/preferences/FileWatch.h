// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QFileSystemWatcher>
#include <QTimer>

// Reports that a file may have been written, replaced, created or removed. Changes close together
// are reported once. Changes of other files in the folder may be reported too.
class FileWatch : public QObject
{
    Q_OBJECT
public:
    explicit FileWatch(const QString &file);

    // Call this after creating the file or its folder.
    void rewatch();

Q_SIGNALS:
    void changed();

private:
    QString file_;
    QFileSystemWatcher watcher_;
    QTimer pause_;
};
