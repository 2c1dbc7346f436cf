// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/archive/ArchiveFormat.h"

#include <QIODevice>

// Buffers an archive's many small writes and computes the digest of all of them.
class DigestDevice : public QIODevice
{
public:
    explicit DigestDevice(QIODevice &device);

    QByteArray digest(); // of everything written so far
    bool flush();        // false when this or an earlier write failed
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
