// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QList>
#include <QObject>

class DocumentController;
class QAction;
class QMenu;
class QWidget;

// Lists the windows of all documents at the end of a window's menu, which owns it.
class WindowsMenu : public QObject
{
    Q_OBJECT
public:
    WindowsMenu(QMenu &menu, const QWidget &window, DocumentController &documents);

private:
    void rebuild();

    QMenu &menu_;
    const QWidget &window_;
    DocumentController &documents_;
    QList<QAction *> windows_; // including the separator before them
};
