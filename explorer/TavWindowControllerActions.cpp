#include "explorer/PlaneMenu.h"
#include "explorer/TavRegistryOutlineView.h"
#include "explorer/TavWindowController.h"
#include "platform/SystemBeep.h"
#include "platform/desktop/InterfaceLoader.h"
#include "store/TavDataStore.h"
#include "store/TavDocument.h"

#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>

namespace {
// Shows that the program is at work while it reads the registry.
class BusyCursor
{
public:
    BusyCursor() { QGuiApplication::setOverrideCursor(Qt::WaitCursor); }
    ~BusyCursor() { QGuiApplication::restoreOverrideCursor(); }
    BusyCursor(const BusyCursor &) = delete;
    BusyCursor &operator=(const BusyCursor &) = delete;
};
} // namespace

void TavWindowController::connectActions()
{
    const auto connectAction = [this](const char *name, auto receiver) {
        auto *const action = InterfaceLoader::outlet<QAction>(*window_, name);
        connect(action, &QAction::triggered, this, receiver);
        return action;
    };
    connectAction("newDocumentWindowAction", [this] { newDocumentWindow(); });
    for (const QAction *menu : window_->menuBar()->actions()) {
        menu->menu()->menuAction()->setVisible(!menu->menu()->isEmpty());
        // Another window of the document may have changed what the commands tell.
        connect(menu->menu(), &QMenu::aboutToShow, this, &TavWindowController::validateActions);
    }
    connectAction("copyAction", [this] { copy(); });
    outlineViewAction_ = connectAction("outlineViewAction", [this] { outlineView(); });
    browserViewAction_ = connectAction("browserViewAction", [this] { browserView(); });
    toggleAutoupdateAction_ =
        connectAction("toggleAutoupdateAction", [this] { toggleAutoupdate(); });
    toggleTimedUpdateAction_ =
        connectAction("toggleTimedUpdateAction", [this] { toggleTimedUpdate(); });
    changeTimedUpdateAction_ =
        connectAction("changeTimedUpdateAction", [this] { changeTimedUpdate(); });
    toggleShowTerminatedObjectsAction_ = connectAction("toggleShowTerminatedObjectsAction",
                                                       [this] { toggleShowTerminatedObjects(); });
    connectNavigationActions();
    connectAction("expandAllAction", [this] { expandAll(); });
    connectAction("collapseAllAction", [this] { collapseAll(); });
    updateAction_ = connectAction("updateAction", [this] { update(); });
    updateAction_->setShortcuts({QKeySequence(Qt::Key_F5), QKeySequence(Qt::CTRL | Qt::Key_R)});
    updateSelectedObjectAction_ =
        connectAction("updateSelectedObjectAction", [this] { updateSelectedObject(); });
    clearTerminatedObjectsAction_ =
        connectAction("clearTerminatedObjectsAction", [this] { clearTerminatedObjects(); });
}

void TavWindowController::update()
{
    if (!dataStore_->isLive())
        SystemBeep::beep();
    const BusyCursor busy;
    dataStore_->update();
}

void TavWindowController::updateSelectedObject()
{
    if (!dataStore_->isLive())
        SystemBeep::beep();
    const BusyCursor busy;
    if (const EntryRef entry = selectedEntry_)
        dataStore_->updateObject(*entry);
}

void TavWindowController::clearTerminatedObjects()
{
    if (!dataStore_->isLive())
        SystemBeep::beep();
    dataStore_->clearTerminatedObjects();
}

void TavWindowController::toggleShowTerminatedObjects()
{
    showTerminatedObjects_ = !showTerminatedObjects_;
    refreshDisplay();
    validateActions();
}

void TavWindowController::expandAll()
{
    registryOutlineView_->setAllRowsExpanded(true);
    goToEntryPath(selectedEntryPath_, true, true);
}

void TavWindowController::collapseAll()
{
    registryOutlineView_->setAllRowsExpanded(false);
    if (const TavRegistryOutlineItem *const root = rootOutlineItem()) {
        registryOutlineView_->selectRow(*root);
        registryOutlineView_->scrollToSelection();
    }
}

void TavWindowController::copy()
{
    // A field or a cell that shows a part of its text as selected copies that.
    QWidget *const focused = window_->focusWidget();
    if (auto *const field = qobject_cast<QLineEdit *>(focused); field && field->hasSelectedText())
        field->copy();
    else if (auto *const cell = qobject_cast<QPlainTextEdit *>(focused))
        cell->copy();
    else if (selectedEntryPath_)
        QGuiApplication::clipboard()->setText(registryPathForSelectedEntry());
}

void TavWindowController::newDocumentWindow()
{
    auto controller = std::make_unique<TavWindowController>(document_);
    TavWindowController &added = *controller;
    document_.addWindowController(std::move(controller));
    added.showWindow();
}
