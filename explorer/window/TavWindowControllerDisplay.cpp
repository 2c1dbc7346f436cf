// SPDX-License-Identifier: Apache-2.0
// What a window shows of its selection and of its document, and in which order that follows a
// change.
#include "activity/DocumentActivity.h"
#include "explorer/comparison/ComparisonBar.h"
#include "explorer/find/FindController.h"
#include "explorer/findings/DocumentFindings.h"
#include "explorer/selection/PathsPopUp.h"
#include "explorer/window/EntryFacts.h"
#include "explorer/window/MenuCommands.h"
#include "explorer/window/RowPreferences.h"
#include "explorer/window/TavWindowController.h"
#include "explorer/window/WindowStatus.h"
#include "platform/desktop/WindowTitle.h"
#include "store/TavDataStore.h"
#include "store/TavDocument.h"

#include <QMainWindow>

QString TavWindowController::windowTitleForDocumentDisplayName(const QString &displayName) const
{
    const QString object = selectedEntry() ? selectedEntry()->nameAtLocationInPlane(registryPlane())
                                           : tr("(no object selected)");
    QString title = document_.hasFile() && dataStore_->isLive()
                        ? tr("%1 (%2) — %3 — %4")
                              .arg(displayName, dataStore_->hostName(), registryPlane(), object)
                        : tr("%1 — %2 — %3").arg(displayName, registryPlane(), object);
    if (dataStore_->isLive() && !dataStore_->isUpToDate())
        title += tr(" (needs update)");
    return title;
}

void TavWindowController::synchronizeWindowTitleWithDocumentName()
{
    WindowTitle::set(*window_, windowTitleForDocumentDisplayName(document_.displayName()),
                     document_.isDocumentEdited());
}

void TavWindowController::planeChanged()
{
    finder_->updateStepper();
    views_->reload();
    finder_->redisplay();
    synchronizeWindowTitleWithDocumentName();
}

// Deliberate: the paths come first, and the title last.
void TavWindowController::showSelectedEntry()
{
    const EntryRef &entry = selection_->entry();
    pathsPopUp_->populatePathsPopup(entry, selectedEntryPath());
    if (entry) {
        const RegistryService *const service = dataStore_->service();
        facts_->show(*entry, registryPlane(), !service || service->hasSuperclassLookup());
        facts_->setBundleIsLink(moduleOfSelection());
    } else {
        facts_->clearObjectInfo();
        properties_->clearSelection();
    }
    properties_->showPropertiesOf(entry);
    synchronizeWindowTitleWithDocumentName();
    menuCommands_->validate();
}

bool TavWindowController::isFiltering() const
{
    return finder_->filterFindResults() || !showTerminatedObjects_ ||
           (comparisonBar_ && comparisonBar_->showsOnlyDifferences());
}

// Deliberate: hiding what has terminated hides what a search leaves out as well, whether or not
// that is asked for by itself.
bool TavWindowController::passesFilter(const TavRegistryEntry &entry) const
{
    if (!isFiltering())
        return true;
    return isDifferenceShown(entry) && findStateForRegistryEntry(entry) != FindStateNotMatching &&
           (showTerminatedObjects_ || entry.dateTerminated().isNull());
}

FindState TavWindowController::findStateForRegistryEntry(const TavRegistryEntry &entry) const
{
    return finder_->session().findState(entry, registryPlane());
}

bool TavWindowController::showsDeviceNames() const
{
    return rows_->showsDeviceNames();
}

std::optional<int> TavWindowController::secondsSinceChange(const TavRegistryEntry &entry) const
{
    return rows_->marksRecentChanges() ? activity_.recentChanges().secondsSince(entry.entryTag())
                                       : std::nullopt;
}

ExplorerContext::FindingSigns TavWindowController::findingSigns(const TavRegistryEntry &entry) const
{
    if (!rows_->showsFindingSigns())
        return {};
    return {entry.worstFinding(), findings_.worstBelow(entry, registryPlane())};
}

QStringList TavWindowController::findingTitles(const TavRegistryEntry &entry) const
{
    return findings_.titlesAt(entry);
}

// A search may ask for states.
void TavWindowController::noteFindingsChanged()
{
    status_->showFindings(findings_.count(Severity::Error), findings_.count(Severity::Warning),
                          findings_.count(Severity::Note));
    if (!findQuery().isNull())
        refreshDisplay();
    redisplayRows();
}

void TavWindowController::redisplayRows()
{
    views_->redisplayRows();
    finder_->redisplay();
}

bool TavWindowController::showsIcons() const
{
    return rows_->showsIcons();
}

// Nobody waits for them to see the window.
void TavWindowController::lookUpDeviceNames()
{
    if (isPainted_)
        dataStore_->lookUpDeviceNames();
}

void TavWindowController::noteDeviceNamesFound()
{
    if (!findQuery().isNull())
        refreshDisplay(); // the names may match
    redisplayRows();
    if (selectedEntry())
        facts_->showDevice(*selectedEntry());
}

// Deliberate: the search runs again before the tree reloads, and the selection is restored after.
void TavWindowController::refreshDisplay()
{
    selection_->setSelectedEntry(selection_->entry());
    views_->rereadHiddenNodes();
    finder_->findAgain();
    views_->reloadAfterChange();
    goToEntryPath(selectedEntryPath(), false, false);
    properties_->refreshPropertiesOutlineView();
    menuCommands_->validate(); // what stands beside the selection may have changed
}

void TavWindowController::noteDataStoreOutOfDate()
{
    status_->updateStatusBar(*dataStore_);
}

void TavWindowController::noteDataStoreChanged()
{
    refreshDisplay();
    status_->updateStatusBar(*dataStore_);
    lookUpDeviceNames();
    if (comparisonBar_)
        comparisonBar_->update();
}

void TavWindowController::noteDataStoreObjectChanged()
{
    refreshDisplay();
    status_->updateStatusBar(*dataStore_);
    lookUpDeviceNames();
}

void TavWindowController::noteDataStoreObjectsTerminated()
{
    views_->redisplay();
    finder_->redisplay();
    status_->updateStatusBar(*dataStore_);
    menuCommands_->validate();
}

void TavWindowController::noteDataStoreClearedTerminatedObjects()
{
    if (document_.hasFile())
        document_.setDocumentEdited(true);
    refreshDisplay();
    selection_->forgetWhatIsGone();
}

void TavWindowController::dataViewOptionsChanged(TavRegistryProperty *item)
{
    properties_->dataViewOptionsChanged(item);
}

// The value is shown at its own place among the properties. The user is taken there, unless
// something else is selected by now.
void TavWindowController::showAttributeRead(quint64 entryTag, const QString &attribute)
{
    views_->reloadTree(); // the entry's children may be more or fewer
    if (!selectedEntry() || selectedEntry()->entryTag() != entryTag)
        return;
    const bool wasCurrent = properties_->isCurrent(attribute);
    selection_->setSelectedEntry(selection_->entry());
    properties_->refreshPropertiesOutlineView();
    if (wasCurrent && !properties_->isCurrent(attribute)) // else it failed, and is still unread
        properties_->goToAttribute(attribute);
}
