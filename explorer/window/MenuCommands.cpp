// SPDX-License-Identifier: Apache-2.0
#include "explorer/window/MenuCommands.h"

#include "explorer/window/TavWindowController.h"
#include "platform/desktop/InterfaceLoader.h"
#include "platform/host/SystemBeep.h"

#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>

MenuCommands::MenuCommands(TavWindowController &controller)
    : controller_(controller)
{
    QMainWindow &window = *controller.window();
    for (const MenuCommand &command : table()) {
        auto *const item = InterfaceLoader::outlet<QAction>(window, command.item);
        commandsOfItems_.insert(item, &command);
        connect(item, &QAction::triggered, this, [this, item] { perform(*item); });
    }
    InterfaceLoader::outlet<QAction>(window, "updateAction")
        ->setShortcuts({QKeySequence(Qt::Key_F5), QKeySequence(Qt::CTRL | Qt::Key_R)});
    for (QAction *menu : window.menuBar()->actions()) {
        menu->setVisible(!menu->menu()->isEmpty());
        // Another window of the document may have changed what the commands show.
        connect(menu->menu(), &QMenu::aboutToShow, this, &MenuCommands::validate);
    }
    connect(QGuiApplication::clipboard(), &QClipboard::dataChanged, this, &MenuCommands::validate);
}

// A key may ask for a command that cannot run any more and is not disabled yet.
void MenuCommands::perform(QAction &item)
{
    if (validateMenuItem(item)) {
        commandsOfItems_[&item]->action(controller_);
        return;
    }
    item.setEnabled(false);
    SystemBeep::beep();
}

bool MenuCommands::validateMenuItem(QAction &item) const
{
    const MenuCommand *const command = commandsOfItems_.value(&item);
    if (!command)
        return true;
    const QString title = command->title ? command->title(controller_) : QString();
    if (!title.isNull())
        item.setText(title);
    if (command->isChecked)
        item.setChecked(command->isChecked(controller_));
    return !command->isEnabled || command->isEnabled(controller_);
}

void MenuCommands::validate()
{
    for (auto item = commandsOfItems_.keyBegin(); item != commandsOfItems_.keyEnd(); ++item)
        (*item)->setEnabled(validateMenuItem(**item));
}

bool MenuCommands::isKeyOfCommand(const QKeyEvent &key) const
{
    const QKeySequence pressed(
        QKeyCombination(key.modifiers() & ~Qt::KeypadModifier, Qt::Key(key.key())));
    return std::any_of(commandsOfItems_.keyBegin(), commandsOfItems_.keyEnd(),
                       [&](const QAction *item) { return item->shortcuts().contains(pressed); });
}
