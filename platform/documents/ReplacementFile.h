#pragma once

#include <QFile>

// A new content for a file, which it takes over as a whole or not at all. Where the folder allows
// it, the content has no name until it is complete.
class ReplacementFile
{
public:
    // A link is followed: what it leads to is replaced.
    explicit ReplacementFile(const QString &replaced);
    ~ReplacementFile(); // without a commit nothing is left of it
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
    QByteArray path_; // empty while it has none
    QFile file_;
    QFileDevice::FileError error_ = QFileDevice::NoError;
    QString errorString_;
};
