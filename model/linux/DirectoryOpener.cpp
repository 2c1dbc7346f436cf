#include "model/linux/DirectoryOpener.h"

#include <cerrno>

namespace {
constexpr qsizetype longestPiece = 2048; // half of what the kernel takes, and quicker to walk
} // namespace

FileDescriptor DirectoryOpener::open(const QByteArray &path)
{
    constexpr int flags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
    qsizetype start = 0;
    std::size_t position = 0;
    while (path.size() - start > longestPiece) {
        const qsizetype end = path.lastIndexOf('/', start + longestPiece);
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
    // It need not be readable to lead further down.
    piece.descriptor = FileDescriptor(openat(folder(position), piece.path.constData(),
                                             O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (!piece.descriptor)
        return false;
    pieces_.push_back(std::move(piece));
    return true;
}
