// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QObject>

class QAction;
class QMenu;

// Lists the saved filters at the end of a menu, with a submenu to remove them.
class SavedFiltersMenu : public QObject
{
    Q_OBJECT
public:
    explicit SavedFiltersMenu(QMenu &menu); // which owns it

Q_SIGNALS:
    void filterChosen(const QString &expression);

private:
    void rebuild();

    QMenu &menu_;
    QMenu *removeMenu_ = nullptr; // null: there are none
    QList<QAction *> items_;      // of the menu, which change
};
