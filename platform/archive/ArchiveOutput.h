#pragma once

#include "platform/archive/ArchiveFormat.h"

#include <QIODevice>

// Gathers an archive's many small pieces into large writes and keeps the digest of all of them.
class ArchiveOutput : public QIODevice
{
public:
    explicit ArchiveOutput(QIODevice &device);

    QByteArray digest(); // of all written so far
    bool flush();        // false when any write failed, now or before
    bool hasFailed() const { return hasFailed_; }

protected:
    qint64 readData(char *, qint64) override { return -1; }
    qint64 writeData(const char *data, qint64 size) override;

private:
    bool writePending();

    QIODevice &device_;
    QByteArray pending_;
    QCryptographicHash digest_{ArchiveFormat::digest};
    bool hasFailed_ = false;
};
