// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <algorithm>
#include <fcntl.h>
#include <unistd.h>
#include <utility>

// Owns an open file.
class FileDescriptor
{
public:
    FileDescriptor() = default;
    explicit FileDescriptor(int descriptor)
        : descriptor_(descriptor)
    {}
    FileDescriptor(FileDescriptor &&other) noexcept
        : descriptor_(std::exchange(other.descriptor_, -1))
    {}
    FileDescriptor &operator=(FileDescriptor &&other) noexcept
    {
        std::swap(descriptor_, other.descriptor_);
        return *this;
    }
    ~FileDescriptor()
    {
        if (descriptor_ >= 0)
            ::close(descriptor_);
    }

    int get() const { return descriptor_; }
    explicit operator bool() const { return descriptor_ >= 0; }

private:
    int descriptor_ = -1;
};

// The first bytes of a file below a directory; null when it cannot be read without blocking.
inline QByteArray readSmallFile(int directory, const char *path, qsizetype maxSize)
{
    const FileDescriptor file(
        openat(directory, path, O_RDONLY | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK));
    if (!file)
        return {};
    QByteArray bytes(maxSize, Qt::Uninitialized);
    bytes.truncate(
        std::max<ssize_t>(::read(file.get(), bytes.data(), static_cast<std::size_t>(maxSize)), 0));
    return bytes;
}
