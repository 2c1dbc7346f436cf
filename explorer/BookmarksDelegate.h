#pragma once

#include <QString>

// Keeps the bookmarks that explorer windows make.
class BookmarksDelegate
{
public:
    virtual ~BookmarksDelegate() = default;
    virtual void addBookmark(const QString &name, const QString &registryPath,
                             bool setAsDefault) = 0;

    // Of the whole program, null while there is none. It must outlive its use.
    static BookmarksDelegate *shared() { return shared_; }
    static void setShared(BookmarksDelegate *delegate) { shared_ = delegate; }

private:
    inline static BookmarksDelegate *shared_ = nullptr;
};
