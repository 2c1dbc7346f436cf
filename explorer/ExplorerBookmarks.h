// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/TavRegistryEntry.h"

// The bookmarks as explorer windows use them. The program sets the object that keeps them; it is
// shared because all windows of all documents have the same bookmarks.
class ExplorerBookmarks
{
public:
    virtual ~ExplorerBookmarks() = default;
    virtual QString defaultBookmarkPath() = 0; // null without one
    virtual void addBookmarkNamed(const QString &name, const QString &path, bool setAsDefault) = 0;

    // For a bookmark of the entry, such as "disk@0 (DxService)".
    static QString proposedName(const TavRegistryEntry &entry, const QString &plane)
    {
        return QStringLiteral("%1 (%2)").arg(entry.nameAtLocationInPlane(plane), plane);
    }

    static ExplorerBookmarks *shared() { return shared_; } // null without bookmarks
    static void setShared(ExplorerBookmarks *bookmarks) { shared_ = bookmarks; }

private:
    inline static ExplorerBookmarks *shared_ = nullptr;
};
