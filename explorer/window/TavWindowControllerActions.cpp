#include "explorer/tree/TavRegistryOutlineView.h"
#include "explorer/window/TavWindowController.h"
#include "platform/host/SystemBeep.h"
#include "platform/widgets/BusyCursor.h"
#include "platform/widgets/FactField.h"
#include "store/TavDataStore.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QLineEdit>
#include <QMainWindow>
#include <QPlainTextEdit>

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
    if (const EntryRef entry = selectedEntry_) {
        dataStore_->updateObject(*entry);
        registryOutlineView_->reloadData(); // its children may be more or fewer
        validateActions();
    }
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
    if (auto *const fact = qobject_cast<FactField *>(focused); fact && fact->hasSelectedText())
        fact->copy();
    else if (auto *const field = qobject_cast<QLineEdit *>(focused);
             field && field->hasSelectedText())
        field->copy();
    else if (auto *const cell = qobject_cast<QPlainTextEdit *>(focused))
        cell->copy();
    else if (selectedEntryPath_)
        QGuiApplication::clipboard()->setText(registryPathForSelectedEntry());
}

void TavWindowController::paste()
{
    // A field that is being edited takes the text itself.
    auto *const field = qobject_cast<QLineEdit *>(window_->focusWidget());
    if (field && !field->isReadOnly())
        field->paste();
    else if (canPaste())
        goToRegistryPath(QGuiApplication::clipboard()->text());
}
