// The table of the commands in a window's menus.
#include "explorer/selection/SelectionHistory.h"
#include "explorer/window/MenuCommand.h"
#include "explorer/window/TavWindowController.h"
#include "store/TavDataStore.h"

#include <QUndoStack>

std::span<const MenuCommand> TavWindowController::menuCommands()
{
    using Window = TavWindowController;
    static constexpr auto always = nullptr;
    static constexpr auto fixed = nullptr; // the title

    static constexpr auto isLive = [](const Window &w) { return w.dataStore_->isLive(); };
    static constexpr auto isTree = [](const Window &w) { return !w.browserIsVisible(); };
    static constexpr auto isBrowser = [](const Window &w) { return w.browserIsVisible(); };
    static constexpr auto isSelected = [](const Window &w) { return w.selectedEntry_ != nullptr; };
    static constexpr auto isBelowRoot = [](const Window &w) {
        return w.selectedEntryPath_ && w.selectedEntryPath_->length() >= 2;
    };

    static constexpr MenuCommand commands[] = {
        {"undoAction", &Window::undo, [](const Window &w) { return w.undoStack_->canUndo(); },
         [](const Window &w) { return w.undoTitle(); }},
        {"redoAction", &Window::redo, [](const Window &w) { return w.undoStack_->canRedo(); },
         [](const Window &w) { return w.redoTitle(); }},
        {"copyAction", &Window::copy},
        {"copyNameAction", &Window::copyName, isSelected},
        {"copyPathAction", &Window::copyPath, isSelected},
        {"copyClassAction", &Window::copyClass, isSelected},
        {"copyBundleAction", &Window::copyBundle, [](const Window &w) { return w.hasBundle(); }},
        {"pasteAction", &Window::paste, [](const Window &) { return canPaste(); }},

        {"outlineViewAction", &Window::outlineView, always, fixed, isTree},
        {"browserViewAction", &Window::browserView, always, fixed, isBrowser},
        {"expandAllAction", &Window::expandAll, isTree},
        {"collapseAllAction", &Window::collapseAll, isTree},
        {"collapseAroundSelectionAction", &Window::collapseAroundSelection,
         [](const Window &w) { return isTree(w) && isBelowRoot(w); }},

        {"goBackAction", &Window::goBack, [](const Window &w) { return w.history_->canGoBack(); }},
        {"goForwardAction", &Window::goForward,
         [](const Window &w) { return w.history_->canGoForward(); }},
        {"selectParentAction", &Window::selectParent, isBelowRoot},
        {"selectChildAction", &Window::selectChild,
         [](const Window &w) { return w.canSelectChild(); }},
        {"selectNextSiblingAction", &Window::selectNextSibling,
         [](const Window &w) { return w.canSelectNextSibling(); }},
        {"selectPreviousSiblingAction", &Window::selectPreviousSibling,
         [](const Window &w) { return w.canSelectPreviousSibling(); }},
        {"goToNextPathInPlaneAction", &Window::goToNextPathInPlane,
         [](const Window &w) { return w.nextEntryPathInPlane(true).has_value(); }},
        {"goToPrevPathInPlaneAction", &Window::goToPrevPathInPlane,
         [](const Window &w) { return w.prevEntryPathInPlane(true).has_value(); }},
        {"goToNextPathCrossPlaneAction", &Window::goToNextPathCrossPlane,
         [](const Window &w) { return w.nextEntryPathInPlane(false).has_value(); }},
        {"goToPrevPathCrossPlaneAction", &Window::goToPrevPathCrossPlane,
         [](const Window &w) { return w.prevEntryPathInPlane(false).has_value(); }},
        {"goToNextSnapshotAction", &Window::goToNextSnapshot},
        {"goToPrevSnapshotAction", &Window::goToPrevSnapshot},
        {"jumpToSelectionAction", &Window::jumpToSelection},
        {"promptForPathAction", &Window::promptForPath},
        {"revealSelectionBundleInNavroAction", &Window::revealSelectionBundleInNavro,
         [](const Window &w) { return w.hasBundlePath(); }},

        {"beginFindAction", &Window::beginFind},
        {"findNextAction", &Window::findNext,
         [](const Window &w) { return w.nextFindPathInPlane(true, true).has_value(); }},
        {"findPrevAction", &Window::findPrev,
         [](const Window &w) { return w.prevFindPathInPlane(true, true).has_value(); }},
        {"findNextInAnyPlaneAction", &Window::findNextInAnyPlane,
         [](const Window &w) { return w.canFindInAnyPlane(); }},
        {"findPrevInAnyPlaneAction", &Window::findPrevInAnyPlane,
         [](const Window &w) { return w.canFindInAnyPlane(); }},
        {"toggleFindOptionsDrawerAction", &Window::toggleFindOptionsDrawer, always,
         [](const Window &w) {
             return w.drawerIsOpen() ? tr("Hide Find &Options") : tr("Show Find &Options");
         }},

        {"updateAction", &Window::update, isLive},
        {"updateSelectedObjectAction", &Window::updateSelectedObject,
         [](const Window &w) { return isLive(w) && isSelected(w); }},
        {"readAttributeAction", &Window::readSelectedAttribute,
         [](const Window &w) { return w.canReadSelectedAttribute(); }},
        {"toggleAutoupdateAction", &Window::toggleAutoupdate, isLive, fixed,
         [](const Window &w) { return isLive(w) && w.dataStore_->isAutoupdate(); }},
        {"toggleTimedUpdateAction", &Window::toggleTimedUpdate, isLive,
         [](const Window &w) { return w.toggleTimedUpdateTitle(); },
         [](const Window &w) { return isLive(w) && w.dataStore_->isPolledUpdate(); }},
        {"changeTimedUpdateAction", &Window::changeTimedUpdate, isLive,
         [](const Window &w) { return w.changeTimedUpdateTitle(); }},
        {"toggleShowTerminatedObjectsAction", &Window::toggleShowTerminatedObjects, always,
         [](const Window &w) { return w.toggleShowTerminatedObjectsTitle(); }},
        {"clearTerminatedObjectsAction", &Window::clearTerminatedObjects, isLive},

        {"promptForBookmarkAction", &Window::promptForBookmark, isSelected},

        {"newDocumentWindowAction", &Window::newDocumentWindow, always,
         [](const Window &w) { return w.newDocumentWindowTitle(); }},
        {"openInNewWindowAction", &Window::openInNewWindow, isSelected},
    };
    return commands;
}
