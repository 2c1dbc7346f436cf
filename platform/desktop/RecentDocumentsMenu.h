// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QObject>

class QMenu;
class RecentDocuments;

// Lists the recent documents in a menu, which owns it.
class RecentDocumentsMenu : public QObject
{
    Q_OBJECT
public:
    RecentDocumentsMenu(QMenu &menu, RecentDocuments &documents);

Q_SIGNALS:
    void chosen(const QString &file);

private:
    void rebuild();

    QMenu &menu_;
    RecentDocuments &documents_;
};
