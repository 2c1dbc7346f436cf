// SPDX-License-Identifier: Apache-2.0
#include "platform/archive/DigestDevice.h"

static constexpr qsizetype pieceSize = 256 * 1024;

DigestDevice::DigestDevice(QIODevice &device)
    : device_(device)
{
    pending_.reserve(pieceSize);
    open(QIODevice::WriteOnly | QIODevice::Unbuffered);
}

QByteArray DigestDevice::digest()
{
    flush();
    return digest_.result();
}

bool DigestDevice::flush()
{
    if (!hasFailed_) {
        digest_.addData(pending_);
        hasFailed_ = !writePending();
    }
    pending_.resize(0);
    return !hasFailed_;
}

bool DigestDevice::writePending()
{
    // On a full disk, only the second attempt, for the rest, reports the reason.
    qint64 written = 0;
    while (written < pending_.size()) {
        const qint64 piece =
            device_.write(pending_.constData() + written, pending_.size() - written);
        if (piece <= 0) {
            setErrorString(device_.errorString());
            return false;
        }
        written += piece;
    }
    return true;
}

qint64 DigestDevice::writeData(const char *data, qint64 size)
{
    if (pending_.size() + size > pieceSize)
        flush();
    pending_.append(data, size);
    return size;
}
