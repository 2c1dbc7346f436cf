#pragma once

#include <QFileSystemWatcher>
#include <QTimer>

// Reports that a file may have changed, be it written in place, replaced, made or removed. Changes
// close together are reported once. What happens to other files of the folder is reported too.
class FileWatch : public QObject
{
    Q_OBJECT
public:
    explicit FileWatch(const QString &file);

    // After the file or its folder was made.
    void rewatch();

Q_SIGNALS:
    void changed();

private:
    QString file_;
    QFileSystemWatcher watcher_;
    QTimer pause_;
};
