// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/linux/FileDescriptor.h"
#include "model/linux/SysfsPath.h"

#include <vector>

// Opens directories by paths of any length. The kernel refuses paths as long as PATH_MAX, so a long
// one is opened piece by piece; the pieces stay open for the next path, which mostly begins the
// same. Used from one thread.
class DirectoryOpener
{
public:
    explicit DirectoryOpener(int top)
        : top_(top)
    {}

    // None with errno set. A link at the end is not followed.
    FileDescriptor open(const SysfsPath &path);

private:
    struct Piece
    {
        QByteArray path; // below the previous piece
        FileDescriptor descriptor;
    };

    // Opens the piece at the position unless it is open.
    bool keep(std::size_t position, QByteArrayView path);
    int folder(std::size_t position) const
    {
        return position == 0 ? top_ : pieces_[position - 1].descriptor.get();
    }

    int top_;
    std::vector<Piece> pieces_;
};
