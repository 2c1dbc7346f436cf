// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QDateTime>
#include <QString>

// The list of recently used files that all programs of a desktop share, by the freedesktop
// specification of bookmarks: recently-used.xbel in the user's data folder.
class DesktopRecentFiles
{
public:
    static QString defaultList();
    explicit DesktopRecentFiles(QString list = defaultList());

    // Leaves everything of other programs as it is; false, with the list as it was, when it is
    // damaged or too large, or cannot be written.
    bool add(const QString &file, const QString &mimeType,
             const QDateTime &now = QDateTime::currentDateTimeUtc());

private:
    QString list_;
};
