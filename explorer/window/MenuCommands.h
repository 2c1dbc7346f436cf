// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "explorer/window/MenuCommand.h"

#include <QHash>
#include <QObject>
#include <span>

class QAction;
class QKeyEvent;

// Runs the commands of a window's menus and keeps the menu items true to the state.
class MenuCommands : public QObject
{
    Q_OBJECT
public:
    explicit MenuCommands(TavWindowController &controller); // which must outlive this

    void validate(); // whenever the state that the items show has changed
    // Has a menu item show the state. Whether its command can run now; others' can always.
    bool validateMenuItem(QAction &item) const;
    bool isKeyOfCommand(const QKeyEvent &key) const;

private:
    static std::span<const MenuCommand> table();
    void perform(QAction &item);

    TavWindowController &controller_;
    QHash<QAction *, const MenuCommand *> commandsOfItems_;
};
