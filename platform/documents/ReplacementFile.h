// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QFile>

// Replaces a file's content completely or not at all. Where the folder allows it, the new content
// has no name until it is complete.
class ReplacementFile
{
public:
    // Follows a link and replaces its target.
    explicit ReplacementFile(const QString &replaced);
    ~ReplacementFile(); // discards the content unless committed
    ReplacementFile(const ReplacementFile &) = delete;
    ReplacementFile &operator=(const ReplacementFile &) = delete;

    bool open();
    QIODevice &content() { return file_; }
    qint64 size() const { return file_.size(); }
    bool commit();

    QFileDevice::FileError error() const;
    QString errorString() const;

private:
    bool create();
    bool giveName();
    bool fail(QFileDevice::FileError error);
    QByteArray newPath() const;

    QByteArray replaced_;
    QByteArray path_; // empty: no name
    QFile file_;
    QFileDevice::FileError error_ = QFileDevice::NoError;
    QString errorString_;
};
