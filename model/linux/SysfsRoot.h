#pragma once

#include "model/linux/DirectoryOpener.h"

#include <QByteArray>
#include <optional>
#include <vector>

// A sysfs tree, the kernel's own or a recorded one. Paths are relative to it, without a leading
// slash; nothing is opened for writing, and no link at the end of a path is followed. Safe to use
// from any thread.
class SysfsRoot
{
public:
    enum class EntryType : quint8 { Directory, Link, File, Other };
    struct Entry
    {
        QByteArray name;
        quint64 inode;
        EntryType type;
    };

    // None with a message for the user when the folder is no sysfs tree.
    static std::optional<SysfsRoot> open(const QByteArray &folder, QString *error);

    const QByteArray &folder() const { return folder_; }
    bool isKernels() const { return isKernels_; }

    FileDescriptor openDirectory(const QByteArray &path) const; // none with errno set
    // For many directories near to each other. Goes before the root.
    DirectoryOpener opener() const { return DirectoryOpener(descriptor_.get()); }
    quint64 inodeOf(const QByteArray &path) const; // 0 when there is nothing
    // The entries of a directory by name in byte order. Returns 0, or the error number that ended
    // the list early.
    static int list(int directory, std::vector<Entry> &entries);
    // The text of a link; null with errno set when it cannot be read.
    static QByteArray readLink(int directory, const QByteArray &name);
    // Where a link leads, relative to the root, by its text alone. Null when it leads out of it or
    // could not be read.
    static QByteArray resolveLink(const QByteArray &directoryPath, const QByteArray &target);

private:
    QByteArray folder_;
    FileDescriptor descriptor_;
    bool isKernels_ = false;
};
