#include "platform/ArchiveOutput.h"

static constexpr qsizetype pieceSize = 256 * 1024;

ArchiveOutput::ArchiveOutput(QIODevice &device)
    : device_(device)
{
    pending_.reserve(pieceSize);
    open(QIODevice::WriteOnly | QIODevice::Unbuffered);
}

QByteArray ArchiveOutput::digest()
{
    flush();
    return digest_.result();
}

bool ArchiveOutput::flush()
{
    if (!hasFailed_) {
        digest_.addData(pending_);
        hasFailed_ = device_.write(pending_) != pending_.size();
        if (hasFailed_)
            setErrorString(device_.errorString());
    }
    pending_.resize(0);
    return !hasFailed_;
}

qint64 ArchiveOutput::writeData(const char *data, qint64 size)
{
    if (pending_.size() + size > pieceSize)
        flush();
    pending_.append(data, size);
    return size;
}
