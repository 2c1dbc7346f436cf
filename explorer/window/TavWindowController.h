// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "explorer/ExplorerContext.h"
#include "explorer/find/FindController.h"
#include "explorer/selection/EntrySelection.h"
#include "explorer/views/ExplorerViews.h"
#include "explorer/window/PropertiesPane.h"
#include "platform/runloop/NotificationCenter.h"
#include "store/TavDocumentWindowController.h"

class ComparisonBar;
class DocumentActivity;
class ComparisonDocument;
class ComparisonExport;
class DocumentFindings;
class EntryCommands;
class EntryFacts;
class ExportCommands;
class MenuCommands;
class PathsPopUp;
class PlaneMenu;
class QAction;
class RowPreferences;
class TavDocument;
class ValuePreferences;
class WindowDocks;
class WindowSheets;
class WindowStatus;

// Drives one explorer window on its document's data store. Each part of the window has a class of
// its own; this one puts their steps in order. Main thread only.
class TavWindowController : public QObject,
                            public TavDocumentWindowController,
                            public ExplorerContext
{
    Q_OBJECT
public:
    using Path = EntrySelection::Path;

    explicit TavWindowController(TavDocument &document); // which owns it
    ~TavWindowController() override;

    QMainWindow *window() const { return window_.get(); }
    QWidget *documentWindow() const override;
    void showWindow() override;
    TavDocument &document() const { return document_; }
    ExplorerViews &views() const { return *views_; }
    EntrySelection &selection() const { return *selection_; }
    FindController &finder() const { return *finder_; }
    PropertiesPane &properties() const { return *properties_; }
    EntryCommands &entryCommands() const { return *entryCommands_; }
    ValuePreferences &values() const { return *values_; }
    RowPreferences &rows() const { return *rows_; }
    WindowDocks &docks() const { return *docks_; }
    WindowSheets &sheets() const { return *sheets_; }
    ExportCommands &exporter() const { return *exporter_; }

    TavDataStore *dataStore() const override; // the document's
    const QString &registryPlane() const override { return selection_->registryPlane(); }
    bool showNumPaths() const override { return showNumPaths_; }
    bool showsDeviceNames() const override;
    bool showsIcons() const override;
    const ComparisonStore *comparison() const override;
    std::optional<int> secondsSinceChange(const TavRegistryEntry &entry) const override;
    FindingSigns findingSigns(const TavRegistryEntry &entry) const override;
    QStringList findingTitles(const TavRegistryEntry &entry) const override;
    bool showTerminatedObjects() const { return showTerminatedObjects_; }
    const Path &selectedEntryPath() const { return selection_->entryPath(); }
    TavRegistryEntry *selectedEntry() const { return selection_->entry().get(); }
    QString registryPathForSelectedEntry() const { return selection_->registryPath(); }
    TavRegistryOutlineItem *rootOutlineItem() const; // of the plane; null without a registry
    const PropertyRef &rootPropertyItem() const { return properties_->rootPropertyItem(); }

    FindState findStateForRegistryEntry(const TavRegistryEntry &entry) const override;
    bool hidesEverything() const override { return finder_->hidesEverything(); }
    bool isFiltering() const override;
    bool passesFilter(const TavRegistryEntry &entry) const override;

    void setRegistryPlane(const QString &plane, bool updatePopup);
    void planePopupChanged();
    void selectEntryPath(const Path &path);
    void goToEntryPath(const Path &path, bool scrollToVisible, bool beepOnFail);
    void goToRegistryPath(const QString &path);
    void goToBookmark(const QAction &item); // whose data are the bookmark's record
    void refreshDisplay();
    QString windowTitleForDocumentDisplayName(const QString &displayName) const;

    bool browserIsVisible() const;
    bool isExplorerFirstResponder() const;
    void makeExplorerFirstResponder();
    void outlineView();
    void browserView();
    void expandAll();
    void collapseAll();
    void collapseAroundSelection();
    void jumpToSelection();
    void selectPropertyKeyIndexPath(const std::vector<PropertyPathMember> &path);

    const std::optional<EntrySet> &foundObjects() const
    {
        return finder_->session().foundObjects();
    }
    const QString &findQuery() const { return finder_->session().findQuery(); } // null: no search
    FindOptions findOptions() const { return finder_->session().options(); }
    void beginFind();
    void find(); // what the field says
    void findWithString(const QString &text);
    void findNext();
    void findPrev();
    Path nextFindPathInPlane(bool samePlane, bool mustAdvance) const;
    Path prevFindPathInPlane(bool samePlane, bool mustAdvance) const;

    void pathPopupChanged(int item);
    Path nextEntryPathInPlane(bool inSamePlane) const;
    Path prevEntryPathInPlane(bool inSamePlane) const;
    void goToNextPathInPlane();
    void goToPrevPathInPlane();
    void goToNextPathCrossPlane();
    void goToPrevPathCrossPlane();
    void selectParent();
    void selectChild();
    void selectNextSibling();
    void selectPreviousSibling();
    void goBack();
    void goForward();
    void goToNextDifference();
    void goToPreviousDifference();
    void exportComparison();
    void goToNextSnapshot();
    void goToPrevSnapshot();
    void promptForPath();
    void cancelGoToPath();
    void copy();
    void paste();

    void synchronizeWindowTitleWithDocumentName() override;
    void noteDataStoreOutOfDate() override;
    void noteDataStoreChanged() override;
    void noteDataStoreObjectChanged() override;
    void noteDataStoreObjectsTerminated() override;
    void noteDataStoreClearedTerminatedObjects() override;
    void noteDeviceNamesFound();
    void noteFindingsChanged();
    void dataViewOptionsChanged(TavRegistryProperty *item) override;

    void newDocumentWindow();
    void openInNewWindow(); // what is selected
    void update();
    bool canUpdate() const;
    void updateSelectedObject();
    void clearTerminatedObjects();
    void toggleAutoupdate();
    void togglePause();
    void toggleTimedUpdate();
    void changeTimedUpdate();
    void toggleShowTerminatedObjects();
    bool validateMenuItem(QAction &item) const;

private:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void makeParts();
    void connectParts();
    void windowDidLoad();
    void lookUpDeviceNames();
    void redisplayRows();
    void planeChanged();
    void showSelectedEntry();
    void offerEntries(const std::vector<EntryRef> &entries);
    TavRegistryEntry *moduleOfSelection() const; // null: none, or it is what is selected
    void followLink(const EntryRef &target, bool inNewWindow);
    void goToEntryOfLog(quint64 tag);
    void showAttributeRead(quint64 entryTag, const QString &attribute);
    void showView(ExplorerViews::Style style);
    void addComparisonBar();
    void showComparison();
    bool isDifferenceShown(const TavRegistryEntry &entry) const;
    void goToDifference(const Path &path);

    TavDocument &document_;
    ComparisonDocument *const comparisonDocument_; // null: the document is a registry
    std::shared_ptr<TavDataStore> dataStore_;
    DocumentActivity &activity_;
    DocumentFindings &findings_;
    bool showTerminatedObjects_ = true;
    bool showNumPaths_ = false;
    bool isPainted_ = false; // the window, once
    NotificationCenter::Observation deviceNamesFound_;
    NotificationCenter::Observation eventsHeld_;
    std::unique_ptr<RowPreferences> rows_;
    std::unique_ptr<ValuePreferences> values_;
    std::unique_ptr<QMainWindow> window_;
    std::unique_ptr<ExplorerViews> views_;
    std::unique_ptr<PlaneMenu> planeMenu_;
    std::unique_ptr<EntrySelection> selection_;
    std::unique_ptr<PathsPopUp> pathsPopUp_;
    std::unique_ptr<FindController> finder_;
    std::unique_ptr<PropertiesPane> properties_;
    std::unique_ptr<EntryFacts> facts_;
    std::unique_ptr<WindowStatus> status_;
    std::unique_ptr<EntryCommands> entryCommands_;
    std::unique_ptr<MenuCommands> menuCommands_;
    std::unique_ptr<WindowSheets> sheets_;
    std::unique_ptr<WindowDocks> docks_;
    std::unique_ptr<ExportCommands> exporter_;
    // Of a comparison; the window owns them.
    ComparisonBar *comparisonBar_ = nullptr;
    ComparisonExport *comparisonExport_ = nullptr;
};
