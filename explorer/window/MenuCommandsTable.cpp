// SPDX-License-Identifier: Apache-2.0
// The table of the commands in a window's menus.
#include "explorer/export/ExportCommands.h"
#include "explorer/find/FindController.h"
#include "explorer/selection/EntrySelection.h"
#include "explorer/sheets/WindowSheets.h"
#include "explorer/views/ExplorerViews.h"
#include "explorer/window/EntryCommands.h"
#include "explorer/window/MenuCommands.h"
#include "explorer/window/PropertiesPane.h"
#include "explorer/window/RowPreferences.h"
#include "explorer/window/TavWindowController.h"
#include "explorer/window/ValuePreferences.h"
#include "explorer/window/WindowDocks.h"
#include "platform/widgets/MenuText.h"
#include "store/TavDataStore.h"
#include "store/TavDocument.h"

namespace {
using Window = TavWindowController;

constexpr auto always = nullptr;
constexpr auto fixed = nullptr; // the title

// Calls an operation of the window, or of one of its parts.
template<auto Operation>
void run(Window &window)
{
    (window.*Operation)();
}
template<auto Part, auto Operation>
void runIn(Window &window)
{
    ((window.*Part)().*Operation)();
}
template<auto Part, auto Question>
bool asks(const Window &window)
{
    return ((window.*Part)().*Question)();
}

bool isLive(const Window &window)
{
    return window.dataStore()->isLive();
}
bool canUpdate(const Window &window)
{
    return window.canUpdate();
}
bool isComparison(const Window &window)
{
    return window.comparison();
}
bool isTree(const Window &window)
{
    return !window.browserIsVisible();
}
bool isBrowser(const Window &window)
{
    return window.browserIsVisible();
}
bool isSelected(const Window &window)
{
    return window.selectedEntry() != nullptr;
}
bool hasEntries(const Window &window)
{
    return window.dataStore()->registryRoot() != nullptr;
}
template<int Step>
bool hasSibling(const Window &window)
{
    return window.views().hasSibling(Step);
}
template<bool InSamePlane>
bool hasNextPath(const Window &window)
{
    return window.nextEntryPathInPlane(InSamePlane).has_value();
}
template<bool InSamePlane>
bool hasPrevPath(const Window &window)
{
    return window.prevEntryPathInPlane(InSamePlane).has_value();
}
bool canFindInAnyPlane(const Window &window)
{
    return window.finder().session().hasPaths();
}

QString pollIntervalText(const Window &window)
{
    return MenuCommands::tr(" (%1s)").arg(QString::number(window.dataStore()->pollInterval(), 'g'));
}
QString toggleTimedUpdateTitle(const Window &window)
{
    if (!isLive(window))
        return {};
    return window.dataStore()->isPolledUpdate()
               ? MenuCommands::tr("&Timed Update") + pollIntervalText(window)
               : MenuCommands::tr("&Timed Update…");
}
QString changeTimedUpdateTitle(const Window &window)
{
    return MenuCommands::tr("Set Timed Update &Interval…") + pollIntervalText(window);
}
QString toggleShowTerminatedObjectsTitle(const Window &window)
{
    return window.showTerminatedObjects() ? MenuCommands::tr("Hide Terminated &Objects")
                                          : MenuCommands::tr("Show Terminated &Objects");
}
QString toggleFindOptionsDrawerTitle(const Window &window)
{
    return window.finder().drawerIsOpen() ? MenuCommands::tr("Hide Find &Options")
                                          : MenuCommands::tr("Show Find &Options");
}
QString newDocumentWindowTitle(const Window &window)
{
    return MenuCommands::tr("New &Viewer Window for '%1'")
        .arg(menuText(window.document().displayName()));
}

constexpr MenuCommand commands[] = {
    {"saveRedactedCopyAction",
     [](Window &window) { window.exporter().saveRedactedCopy(window.document()); },
     [](const Window &window) { return hasEntries(window) && window.document().isSnapshot(); }},
    {"exportAction", runIn<&Window::exporter, &ExportCommands::exportEntries>, hasEntries},
    {"exportComparisonAction", run<&Window::exportComparison>, isComparison},
    {"printAction", runIn<&Window::exporter, &ExportCommands::print>, hasEntries},

    {"undoAction", runIn<&Window::properties, &PropertiesPane::undo>,
     asks<&Window::properties, &PropertiesPane::canUndo>,
     [](const Window &window) { return window.properties().undoTitle(); }},
    {"redoAction", runIn<&Window::properties, &PropertiesPane::redo>,
     asks<&Window::properties, &PropertiesPane::canRedo>,
     [](const Window &window) { return window.properties().redoTitle(); }},
    {"copyAction", run<&Window::copy>},
    {"copyNameAction", runIn<&Window::entryCommands, &EntryCommands::copyName>, isSelected},
    {"copyPathAction", runIn<&Window::entryCommands, &EntryCommands::copyPath>, isSelected},
    {"copyClassAction", runIn<&Window::entryCommands, &EntryCommands::copyClass>, isSelected},
    {"copyBundleAction", runIn<&Window::entryCommands, &EntryCommands::copyBundle>,
     asks<&Window::entryCommands, &EntryCommands::hasBundle>},
    {"copyKernelPathAction", runIn<&Window::entryCommands, &EntryCommands::copyKernelPath>,
     asks<&Window::entryCommands, &EntryCommands::hasKernelPath>},
    {"copyEntryAsTextAction", runIn<&Window::exporter, &ExportCommands::copyEntryAsText>,
     isSelected},
    {"copyEntryAsJsonAction", runIn<&Window::exporter, &ExportCommands::copyEntryAsJson>,
     isSelected},
    {"pasteAction", run<&Window::paste>, [](const Window &) { return EntryCommands::canPaste(); }},

    {"outlineViewAction", run<&Window::outlineView>, always, fixed, isTree},
    {"browserViewAction", run<&Window::browserView>, always, fixed, isBrowser},
    {"toggleDeviceNamesAction", runIn<&Window::rows, &RowPreferences::toggleDeviceNames>, always,
     fixed, asks<&Window::rows, &RowPreferences::showsDeviceNames>},
    {"toggleIconsAction", runIn<&Window::rows, &RowPreferences::toggleIcons>, always, fixed,
     asks<&Window::rows, &RowPreferences::showsIcons>},
    {"toggleRecentChangesAction", runIn<&Window::rows, &RowPreferences::toggleRecentChanges>,
     isLive, fixed, asks<&Window::rows, &RowPreferences::marksRecentChanges>},
    {"toggleFindingSignsAction", runIn<&Window::rows, &RowPreferences::toggleFindingSigns>, always,
     fixed, asks<&Window::rows, &RowPreferences::showsFindingSigns>},
    {"toggleFollowValuesAction", runIn<&Window::values, &ValuePreferences::toggleFollow>, isLive,
     fixed, asks<&Window::values, &ValuePreferences::follows>},
    {"toggleSparklinesAction", runIn<&Window::values, &ValuePreferences::toggleSparklines>, isLive,
     fixed, asks<&Window::values, &ValuePreferences::showsSparklines>},
    {"expandAllAction", run<&Window::expandAll>, isTree},
    {"collapseAllAction", run<&Window::collapseAll>, isTree},
    {"collapseAroundSelectionAction", run<&Window::collapseAroundSelection>,
     [](const Window &window) { return isTree(window) && window.selection().canSelectParent(); }},

    {"goBackAction", run<&Window::goBack>, asks<&Window::selection, &EntrySelection::canGoBack>},
    {"goForwardAction", run<&Window::goForward>,
     asks<&Window::selection, &EntrySelection::canGoForward>},
    {"selectParentAction", run<&Window::selectParent>,
     asks<&Window::selection, &EntrySelection::canSelectParent>},
    {"selectChildAction", run<&Window::selectChild>,
     asks<&Window::selection, &EntrySelection::canSelectChild>},
    {"selectNextSiblingAction", run<&Window::selectNextSibling>, hasSibling<1>},
    {"selectPreviousSiblingAction", run<&Window::selectPreviousSibling>, hasSibling<-1>},
    {"goToNextPathInPlaneAction", run<&Window::goToNextPathInPlane>, hasNextPath<true>},
    {"goToPrevPathInPlaneAction", run<&Window::goToPrevPathInPlane>, hasPrevPath<true>},
    {"goToNextPathCrossPlaneAction", run<&Window::goToNextPathCrossPlane>, hasNextPath<false>},
    {"goToPrevPathCrossPlaneAction", run<&Window::goToPrevPathCrossPlane>, hasPrevPath<false>},
    {"goToNextDifferenceAction", run<&Window::goToNextDifference>, isComparison},
    {"goToPreviousDifferenceAction", run<&Window::goToPreviousDifference>, isComparison},
    {"goToNextSnapshotAction", run<&Window::goToNextSnapshot>},
    {"goToPrevSnapshotAction", run<&Window::goToPrevSnapshot>},
    {"jumpToSelectionAction", run<&Window::jumpToSelection>},
    {"promptForPathAction", run<&Window::promptForPath>},
    {"revealSelectionBundleInNavroAction",
     runIn<&Window::entryCommands, &EntryCommands::revealSelectionBundleInNavro>,
     asks<&Window::entryCommands, &EntryCommands::hasBundlePath>},

    {"beginFindAction", run<&Window::beginFind>},
    {"findNextAction", runIn<&Window::finder, &FindController::findNextInPlane>,
     [](const Window &window) { return window.nextFindPathInPlane(true, true).has_value(); }},
    {"findPrevAction", runIn<&Window::finder, &FindController::findPrevInPlane>,
     [](const Window &window) { return window.prevFindPathInPlane(true, true).has_value(); }},
    {"findNextInAnyPlaneAction", runIn<&Window::finder, &FindController::findNextInAnyPlane>,
     canFindInAnyPlane},
    {"findPrevInAnyPlaneAction", runIn<&Window::finder, &FindController::findPrevInAnyPlane>,
     canFindInAnyPlane},
    {"filterPropertiesAction", runIn<&Window::properties, &PropertiesPane::beginFilter>},
    {"toggleFindOptionsDrawerAction",
     runIn<&Window::finder, &FindController::toggleFindOptionsDrawer>, always,
     toggleFindOptionsDrawerTitle},
    {"toggleFilterModeAction", runIn<&Window::finder, &FindController::toggleFilterMode>, always,
     fixed, asks<&Window::finder, &FindController::isFilterMode>},
    {"saveFilterAction", runIn<&Window::finder, &FindController::saveFilter>,
     asks<&Window::finder, &FindController::canSaveFilter>},

    {"updateAction", run<&Window::update>, canUpdate},
    {"updateSelectedObjectAction", run<&Window::updateSelectedObject>,
     [](const Window &window) { return isLive(window) && isSelected(window); }},
    {"readAttributeAction", runIn<&Window::properties, &PropertiesPane::readSelectedAttribute>,
     asks<&Window::properties, &PropertiesPane::canReadSelectedAttribute>},
    {"toggleAutoupdateAction", run<&Window::toggleAutoupdate>, isLive, fixed,
     [](const Window &window) { return isLive(window) && window.dataStore()->isAutoupdate(); }},
    {"toggleTimedUpdateAction", run<&Window::toggleTimedUpdate>, isLive, toggleTimedUpdateTitle,
     [](const Window &window) { return isLive(window) && window.dataStore()->isPolledUpdate(); }},
    {"changeTimedUpdateAction", run<&Window::changeTimedUpdate>, isLive, changeTimedUpdateTitle},
    {"togglePauseAction", run<&Window::togglePause>, isLive, fixed,
     [](const Window &window) { return window.dataStore()->isPaused(); }},
    {"toggleShowTerminatedObjectsAction", run<&Window::toggleShowTerminatedObjects>, always,
     toggleShowTerminatedObjectsTitle},
    {"markThisMomentAction", [](Window &window) { window.document().markThisMoment(); }, isLive},
    {"clearTerminatedObjectsAction", run<&Window::clearTerminatedObjects>, isLive},

    {"promptForBookmarkAction", runIn<&Window::sheets, &WindowSheets::promptForBookmark>,
     isSelected},

    {"newDocumentWindowAction", run<&Window::newDocumentWindow>, always, newDocumentWindowTitle},
    {"openInNewWindowAction", run<&Window::openInNewWindow>, isSelected},
    {"toggleLogAction", runIn<&Window::docks, &WindowDocks::toggleLog>, isLive, fixed,
     asks<&Window::docks, &WindowDocks::showsLog>},
    {"togglePlotsAction", runIn<&Window::docks, &WindowDocks::togglePlots>, isLive, fixed,
     asks<&Window::docks, &WindowDocks::showsPlots>},
    {"toggleFindingsAction", runIn<&Window::docks, &WindowDocks::toggleFindings>, always, fixed,
     asks<&Window::docks, &WindowDocks::showsFindings>},
};
} // namespace

std::span<const MenuCommand> MenuCommands::table()
{
    return commands;
}
