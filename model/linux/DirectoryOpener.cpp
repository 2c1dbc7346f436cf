// SPDX-License-Identifier: Apache-2.0
#include "model/linux/DirectoryOpener.h"

#include <cerrno>

namespace {
constexpr qsizetype maxPieceSize = 2048; // half of the kernel's limit, and faster to walk
} // namespace

FileDescriptor DirectoryOpener::open(const SysfsPath &sysfsPath)
{
    const QByteArray &path = sysfsPath.toByteArray();
    constexpr int flags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
    qsizetype start = 0;
    std::size_t position = 0;
    while (path.size() - start > maxPieceSize) {
        const qsizetype end = path.lastIndexOf('/', start + maxPieceSize);
        if (end <= start) {
            errno = ENAMETOOLONG;
            return {};
        }
        if (!keep(position, QByteArrayView(path).sliced(start, end - start)))
            return {};
        ++position;
        start = end + 1;
    }
    const char *const rest = path.isEmpty() ? "." : path.constData() + start;
    return FileDescriptor(openat(folder(position), rest, flags));
}

bool DirectoryOpener::keep(std::size_t position, QByteArrayView path)
{
    if (position < pieces_.size() && pieces_[position].path == path)
        return true;
    pieces_.resize(position);
    Piece piece{path.toByteArray(), {}};
    // O_PATH: a folder that cannot be read may still lead further down.
    piece.descriptor = FileDescriptor(openat(folder(position), piece.path.constData(),
                                             O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (!piece.descriptor)
        return false;
    pieces_.push_back(std::move(piece));
    return true;
}
