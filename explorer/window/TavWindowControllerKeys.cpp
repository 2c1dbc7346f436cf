// Keys that are no menu's, or of whose command the menu knows that it cannot run.
#include "explorer/window/TavWindowController.h"
#include "platform/host/SystemBeep.h"
#include "platform/widgets/SearchField.h"

#include <QAction>
#include <QKeyEvent>
#include <QTableView>

bool TavWindowController::takeKey(const QKeyEvent &key)
{
    const bool isAmongEntries = isExplorerFirstResponder() || findTableView_->hasFocus();
    if (key.key() == Qt::Key_Escape && foundObjects_ && isAmongEntries) {
        findField_->cancelSearch();
        return true;
    }
    // Those of commands that can run never come here.
    if (!isKeyOfCommand(key))
        return false;
    SystemBeep::beep();
    return true;
}

bool TavWindowController::isKeyOfCommand(const QKeyEvent &key) const
{
    const QKeySequence pressed(
        QKeyCombination(key.modifiers() & ~Qt::KeypadModifier, Qt::Key(key.key())));
    return std::any_of(commandsOfItems_.keyBegin(), commandsOfItems_.keyEnd(),
                       [&](const QAction *item) { return item->shortcuts().contains(pressed); });
}
