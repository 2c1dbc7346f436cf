#pragma once

#include "explorer/ExplorerBookmarks.h"

// Stands in for the bookmarks and keeps what was added last.
class BookmarksSpy : public ExplorerBookmarks
{
public:
    BookmarksSpy() { setShared(this); }
    ~BookmarksSpy() override { setShared(nullptr); }
    QString defaultBookmarkPath() override { return {}; }
    void addBookmarkNamed(const QString &name, const QString &path, bool setAsDefault) override
    {
        added = name + QLatin1String(" = ") + path + (setAsDefault ? u'!' : u'.');
    }

    QString added; // "NAME = PATH.", with "!" at its end for a default one
};
