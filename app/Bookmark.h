// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QJsonObject>
#include <memory>

// A named registry path. Unknown keys of its dictionary are preserved.
struct Bookmark
{
    static QString nameKey() { return QStringLiteral("Bookmark Name"); }
    static QString pathKey() { return QStringLiteral("Bookmark Path"); }

    static Bookmark make(const QString &name, const QString &path)
    {
        return {{{nameKey(), name}, {pathKey(), path}}};
    }
    QString name() const { return record.value(nameKey()).toString(); }
    QString path() const { return record.value(pathKey()).toString(); } // may be empty

    QJsonObject record;
};

// Shared pointers, because bookmarks with the same name and path are still different ones.
using BookmarkRef = std::shared_ptr<Bookmark>;

// Negative, 0 or positive.
inline int compareAsBookmarks(const Bookmark &a, const Bookmark &b)
{
    return QString::compare(a.name(), b.name(), Qt::CaseInsensitive);
}
