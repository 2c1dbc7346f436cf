// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/Result.h"
#include "model/linux/DirectoryOpener.h"

#include <QString>
#include <optional>
#include <vector>

// Why a folder cannot be used as a sysfs tree.
struct SysfsRootError
{
    enum class Reason : quint8 { CannotOpen, NotASysfsTree };

    Reason reason;
    QByteArray folder;
    int errorNumber = 0; // of CannotOpen

    QString message() const; // for the user
};

// A sysfs tree, the kernel's own or a recorded one. Nothing is opened for writing, and no link at
// the end of a path is followed. Safe to use from any thread.
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

    static Result<SysfsRoot, SysfsRootError> open(const QByteArray &folder);

    const QByteArray &folder() const { return folder_; }
    bool isKernels() const { return isKernels_; }

    FileDescriptor openDirectory(const SysfsPath &path) const; // none with errno set
    // For many directories near each other. Must not outlive the root.
    DirectoryOpener opener() const { return DirectoryOpener(descriptor_.get()); }
    quint64 inodeOf(const SysfsPath &path) const; // 0 when there is nothing
    // Lists a directory, sorted by name. Returns 0, or the error number that ended the list early.
    static int list(int directory, std::vector<Entry> &entries);
    // The text of a link; null with errno set on failure.
    static QByteArray readLink(int directory, const QByteArray &name);
    // The target of a link, by its text only. Null when it leaves the tree or could not be read.
    static SysfsPath resolveLink(const SysfsPath &directory, const QByteArray &target);

private:
    QByteArray folder_;
    FileDescriptor descriptor_;
    bool isKernels_ = false;
};
