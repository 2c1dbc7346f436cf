// SPDX-License-Identifier: Apache-2.0
// The operations of a window that its parts carry out.
#include "explorer/comparison/ComparisonDocument.h"
#include "explorer/selection/PathsPopUp.h"
#include "explorer/sheets/WindowSheets.h"
#include "explorer/tree/TavRegistryOutlineView.h"
#include "explorer/window/EntryCommands.h"
#include "explorer/window/MenuCommands.h"
#include "explorer/window/TavWindowController.h"
#include "platform/desktop/InterfaceLoader.h"
#include "platform/host/SystemBeep.h"
#include "platform/widgets/BusyCursor.h"
#include "store/TavDataStore.h"

#include <QAction>
#include <QMainWindow>

void TavWindowController::setRegistryPlane(const QString &plane, bool updatePopup)
{
    selection_->setRegistryPlane(plane, updatePopup);
}

void TavWindowController::planePopupChanged()
{
    selection_->planePopupChanged();
}

void TavWindowController::selectEntryPath(const Path &path)
{
    selection_->selectEntryPath(path);
}

void TavWindowController::goToEntryPath(const Path &path, bool scrollToVisible, bool beepOnFail)
{
    selection_->goToEntryPath(path, scrollToVisible, beepOnFail);
}

void TavWindowController::goToRegistryPath(const QString &path)
{
    selection_->goToRegistryPath(path);
}

void TavWindowController::goToBookmark(const QAction &item)
{
    goToRegistryPath(item.data().toMap().value(QStringLiteral("Bookmark Path")).toString());
}

bool TavWindowController::browserIsVisible() const
{
    return views_->browserIsVisible();
}

bool TavWindowController::isExplorerFirstResponder() const
{
    return views_->isFirstResponder();
}

void TavWindowController::makeExplorerFirstResponder()
{
    views_->makeFirstResponder();
}

void TavWindowController::outlineView()
{
    showView(ExplorerViews::Style::Outline);
}

void TavWindowController::browserView()
{
    showView(ExplorerViews::Style::Browser);
}

void TavWindowController::showView(ExplorerViews::Style style)
{
    const bool hadFocus = isExplorerFirstResponder();
    window_->setUpdatesEnabled(false);
    views_->show(style);
    goToEntryPath(selectedEntryPath(), true, true);
    if (hadFocus)
        makeExplorerFirstResponder();
    QWidget *before = finder_->field();
    for (QWidget *next : {finder_->offerToFindMore(), views_->visibleView(),
                          properties_->filterField(), properties_->view()})
        QWidget::setTabOrder(std::exchange(before, next), next);
    properties_->refreshPropertiesOutlineView();
    menuCommands_->validate();
    window_->setUpdatesEnabled(true);
}

void TavWindowController::expandAll()
{
    views_->expandAll();
    goToEntryPath(selectedEntryPath(), true, true);
}

void TavWindowController::collapseAll()
{
    views_->collapseAll();
}

void TavWindowController::collapseAroundSelection()
{
    if (!selectedEntryPath())
        return;
    views_->tree().collapseRowsOutside(*selectedEntryPath());
    jumpToSelection();
}

void TavWindowController::jumpToSelection()
{
    views_->scrollToSelection();
    properties_->scrollToSelection();
}

void TavWindowController::selectPropertyKeyIndexPath(const std::vector<PropertyPathMember> &path)
{
    properties_->selectPropertyKeyIndexPath(path);
}

void TavWindowController::beginFind()
{
    finder_->beginFind();
}

void TavWindowController::find()
{
    finder_->find();
}

void TavWindowController::findWithString(const QString &text)
{
    finder_->findWithString(text);
}

void TavWindowController::findNext()
{
    finder_->findNextInPlane();
}

void TavWindowController::findPrev()
{
    finder_->findPrevInPlane();
}

TavWindowController::Path TavWindowController::nextFindPathInPlane(bool samePlane,
                                                                   bool mustAdvance) const
{
    return finder_->nextFindPathInPlane(samePlane, mustAdvance);
}

TavWindowController::Path TavWindowController::prevFindPathInPlane(bool samePlane,
                                                                   bool mustAdvance) const
{
    return finder_->prevFindPathInPlane(samePlane, mustAdvance);
}

void TavWindowController::pathPopupChanged(int item)
{
    pathsPopUp_->choose(item);
}

TavWindowController::Path TavWindowController::nextEntryPathInPlane(bool inSamePlane) const
{
    return pathsPopUp_->nextEntryPath(inSamePlane);
}

TavWindowController::Path TavWindowController::prevEntryPathInPlane(bool inSamePlane) const
{
    return pathsPopUp_->prevEntryPath(inSamePlane);
}

void TavWindowController::goToNextPathInPlane()
{
    pathsPopUp_->goTo(nextEntryPathInPlane(true));
}

void TavWindowController::goToPrevPathInPlane()
{
    pathsPopUp_->goTo(prevEntryPathInPlane(true));
}

void TavWindowController::goToNextPathCrossPlane()
{
    pathsPopUp_->goTo(nextEntryPathInPlane(false));
}

void TavWindowController::goToPrevPathCrossPlane()
{
    pathsPopUp_->goTo(prevEntryPathInPlane(false));
}

void TavWindowController::selectParent()
{
    selection_->selectParent();
}

void TavWindowController::selectChild()
{
    selection_->selectChild();
}

void TavWindowController::selectNextSibling()
{
    selection_->selectNextSibling();
}

void TavWindowController::selectPreviousSibling()
{
    selection_->selectPreviousSibling();
}

void TavWindowController::goBack()
{
    selection_->goBack();
}

void TavWindowController::goForward()
{
    selection_->goForward();
}

// There is no sequence of snapshots to go through.
void TavWindowController::goToNextSnapshot()
{
    SystemBeep::beep();
}

void TavWindowController::goToPrevSnapshot()
{
    SystemBeep::beep();
}

void TavWindowController::promptForPath()
{
    sheets_->promptForPath();
}

void TavWindowController::cancelGoToPath()
{
    sheets_->cancelGoToPath();
}

void TavWindowController::copy()
{
    entryCommands_->copy();
}

void TavWindowController::paste()
{
    entryCommands_->paste();
}

void TavWindowController::update()
{
    if (!canUpdate())
        SystemBeep::beep();
    const BusyCursor busy;
    if (comparisonDocument_)
        comparisonDocument_->update();
    else
        dataStore_->update();
}

bool TavWindowController::canUpdate() const
{
    return comparisonDocument_ ? comparisonDocument_->isLive() : dataStore_->isLive();
}

void TavWindowController::updateSelectedObject()
{
    if (!dataStore_->isLive())
        SystemBeep::beep();
    const BusyCursor busy;
    if (const EntryRef entry = selection_->entry()) {
        dataStore_->updateObject(*entry);
        views_->reloadTree(); // its children may be more or fewer
        menuCommands_->validate();
    }
}

void TavWindowController::clearTerminatedObjects()
{
    if (!dataStore_->isLive())
        SystemBeep::beep();
    dataStore_->clearTerminatedObjects();
}

void TavWindowController::toggleAutoupdate()
{
    if (dataStore_->isLive())
        dataStore_->setAutoupdate(!dataStore_->isAutoupdate());
    menuCommands_->validate();
}

void TavWindowController::togglePause()
{
    dataStore_->setPaused(!dataStore_->isPaused());
    menuCommands_->validate();
}

void TavWindowController::toggleTimedUpdate()
{
    if (!dataStore_->isLive()) {
        SystemBeep::beep();
    } else if (dataStore_->isPolledUpdate()) {
        dataStore_->setPolledUpdate(false);
    } else {
        dataStore_->setPolledUpdate(true);
        changeTimedUpdate();
    }
    menuCommands_->validate();
}

void TavWindowController::changeTimedUpdate()
{
    sheets_->changeTimedUpdate();
}

void TavWindowController::toggleShowTerminatedObjects()
{
    showTerminatedObjects_ = !showTerminatedObjects_;
    refreshDisplay();
}
