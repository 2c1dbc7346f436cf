// Menu items show whether their commands can run now, and the state.
#include "explorer/tree/TavRegistryOutlineItem.h"
#include "explorer/tree/TavRegistryOutlineViewDataSource.h"
#include "explorer/window/MenuCommand.h"
#include "explorer/window/TavWindowController.h"
#include "platform/desktop/InterfaceLoader.h"
#include "platform/host/SystemBeep.h"
#include "platform/widgets/ColumnBrowser.h"
#include "platform/widgets/MenuText.h"
#include "store/TavDataStore.h"
#include "store/TavDocument.h"

#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>

void TavWindowController::connectActions()
{
    for (const MenuCommand &command : menuCommands()) {
        auto *const item = InterfaceLoader::outlet<QAction>(*window_, command.item);
        commandsOfItems_.insert(item, &command);
        connect(item, &QAction::triggered, this, [this, item] { perform(*item); });
    }
    InterfaceLoader::outlet<QAction>(*window_, "updateAction")
        ->setShortcuts({QKeySequence(Qt::Key_F5), QKeySequence(Qt::CTRL | Qt::Key_R)});
    setFindShortcuts();
    for (QAction *menu : window_->menuBar()->actions()) {
        menu->setVisible(!menu->menu()->isEmpty());
        // Another window of the document may have changed what the commands show.
        connect(menu->menu(), &QMenu::aboutToShow, this, &TavWindowController::validateActions);
    }
    connect(QGuiApplication::clipboard(), &QClipboard::dataChanged, this,
            &TavWindowController::validateActions);
}

// A key may ask for a command of which nobody noticed that it cannot run any more.
void TavWindowController::perform(QAction &item)
{
    if (validateMenuItem(item)) {
        (this->*commandsOfItems_[&item]->action)();
        return;
    }
    item.setEnabled(false);
    SystemBeep::beep();
}

bool TavWindowController::validateMenuItem(QAction &item) const
{
    const MenuCommand *const command = commandsOfItems_.value(&item);
    if (!command)
        return true;
    const QString title = command->title ? command->title(*this) : QString();
    if (!title.isNull())
        item.setText(title);
    if (command->isChecked)
        item.setChecked(command->isChecked(*this));
    return !command->isEnabled || command->isEnabled(*this);
}

void TavWindowController::validateActions()
{
    for (auto item = commandsOfItems_.keyBegin(); item != commandsOfItems_.keyEnd(); ++item)
        (*item)->setEnabled(validateMenuItem(**item));
}

bool TavWindowController::canPaste()
{
    const QMimeData *const data = QGuiApplication::clipboard()->mimeData();
    return data && data->hasFormat(QStringLiteral("text/plain"));
}

bool TavWindowController::canSelectChild() const
{
    return selectedEntry_ && !selectedEntry_->childrenInPlane(registryPlane_).empty();
}

bool TavWindowController::canSelectNextSibling() const
{
    if (!browserIsVisible()) {
        const TavRegistryOutlineItem *const selected = outlineDataSource_->selectedItem();
        return selected && selected->nextSibling();
    }
    const int column = registryBrowser_->selectedColumn();
    return registryBrowser_->selectedRow(column) != registryBrowser_->numberOfRows(column) - 1;
}

// Deliberate: in the browser only the first row has none before it, so that the command can run
// with no row selected.
bool TavWindowController::canSelectPreviousSibling() const
{
    if (browserIsVisible())
        return registryBrowser_->selectedRow(registryBrowser_->selectedColumn()) != 0;
    const TavRegistryOutlineItem *const selected = outlineDataSource_->selectedItem();
    return selected && selected->previousSibling();
}

QString TavWindowController::pollIntervalText() const
{
    return tr(" (%1s)").arg(QString::number(dataStore_->pollInterval(), 'g'));
}

QString TavWindowController::toggleTimedUpdateTitle() const
{
    if (!dataStore_->isLive())
        return {};
    return dataStore_->isPolledUpdate() ? tr("&Timed Update") + pollIntervalText()
                                        : tr("&Timed Update…");
}

QString TavWindowController::changeTimedUpdateTitle() const
{
    return tr("Set Timed Update &Interval…") + pollIntervalText();
}

QString TavWindowController::toggleShowTerminatedObjectsTitle() const
{
    return showTerminatedObjects_ ? tr("Hide Terminated &Objects") : tr("Show Terminated &Objects");
}

QString TavWindowController::newDocumentWindowTitle() const
{
    return tr("New &Viewer Window for '%1'").arg(menuText(document_.displayName()));
}
