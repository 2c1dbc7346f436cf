#pragma once

#include "display/EntryTextAttributes.h"
#include "display/views/PropertiesViewController.h"
#include "model/FindOptions.h"
#include "model/TavRegistryEntryPath.h"
#include "store/TavDocumentWindowController.h"

#include <QHash>
#include <QObject>
#include <array>
#include <span>
#include <variant>

class AttributeRequests;
class ColumnBrowser;
class FactField;
class FoundEntryPaths;
class IncompleteBar;
class LongWork;
class PlaneMenu;
class QAction;
class QCheckBox;
class QComboBox;
class QDialog;
class QDockWidget;
class QKeyEvent;
class QLabel;
class QLineEdit;
class QMainWindow;
class QPushButton;
class QSplitter;
class QStackedWidget;
class QTableView;
class QToolButton;
class QUndoStack;
class SearchField;
class SegmentedControl;
class SelectionHistory;
class SplitViewAutosave;
class Stepper;
class TavBrowserDelegate;
class TavDataStore;
class TavDocument;
class TavFindTableViewDataSource;
class TavPropertiesOutlineView;
class TavPropertiesOutlineViewDataSource;
class TavRegistryOutlineItem;
class TavRegistryOutlineView;
class TavRegistryOutlineViewDataSource;
class ViewNote;
struct MenuCommand;

// A step into a property tree: the index of a child, or its name.
using PropertyPathMember = std::variant<qsizetype, QString>;

// Drives one explorer window: a plane of its document's data store as a tree, the facts of the
// selected entry and its property tree. Main thread only.
class TavWindowController : public QObject,
                            public TavDocumentWindowController,
                            public PropertiesViewController
{
    Q_OBJECT
public:
    // For the document to own.
    explicit TavWindowController(TavDocument &document);
    ~TavWindowController() override;

    QMainWindow *window() const { return window_.get(); }
    QWidget *documentWindow() const override;
    void showWindow() override;
    TavDocument &document() const { return document_; }
    TavDataStore *dataStore() const; // the document's
    const QString &registryPlane() const { return registryPlane_; }
    const std::optional<TavRegistryEntryPath> &selectedEntryPath() const
    {
        return selectedEntryPath_;
    }
    TavRegistryEntry *selectedEntry() const { return selectedEntry_.get(); }
    QString registryPathForSelectedEntry() const;    // null without one
    TavRegistryOutlineItem *rootOutlineItem() const; // of the plane; null without a registry
    const PropertyRef &rootPropertyItem() const override { return rootPropertyItem_; }
    bool showNumPaths() const { return showNumPaths_; }
    bool showTerminatedObjects() const { return showTerminatedObjects_; }

    // Searching. Without a search there is no set; the entries in it are kept while it lasts.
    const std::optional<EntrySet> &foundObjects() const { return foundObjects_; }
    const QString &findQuery() const { return findQuery_; } // null: no search
    FindOptions findOptions() const { return findOptions_; }
    void beginFind();
    void find(); // what the field says
    void findWithString(const QString &text);
    void findObjectsMatching(const QString &query);
    void findStep();
    void findNext();
    void findPrev();
    void findNextInAnyPlane();
    void findPrevInAnyPlane();
    void findNext(bool forward, bool inPlane, bool mustAdvance);
    std::optional<TavRegistryEntryPath> nextFindPathInPlane(bool samePlane, bool mustAdvance) const;
    std::optional<TavRegistryEntryPath> prevFindPathInPlane(bool samePlane, bool mustAdvance) const;
    void loadDefaultFindOptions();
    void findOptionsChanged();
    void resetFindOptions();
    void filteredFindChanged();
    void toggleFindOptionsDrawer();
    void toggleFindOptionsDrawerButtonClicked();
    FindState findStateForRegistryEntry(const TavRegistryEntry &entry) const;
    bool filterFindResults() const; // whether only what was found is to be shown
    bool hidesEverything() const;   // a search that filters has found nothing
    bool isFiltering() const { return filterFindResults() || !showTerminatedObjects_; }
    bool passesFilter(const TavRegistryEntry &entry) const;
    EntryList::Entries filterRegistryEntries(const EntryList::Entries &entries) const;
    std::vector<TavRegistryOutlineItem *>
    filterRegistryOutlineItems(std::vector<TavRegistryOutlineItem *> items) const;

    QString windowTitleForDocumentDisplayName(const QString &displayName) const;
    QString toolTipForRegistryEntry(const TavRegistryEntry &entry) const;
    // What is amiss with an entry: shown as a mark on its rows, and said in words; null for most.
    QString warningForEntry(const TavRegistryEntry &entry) const;
    QVariant markForEntry(const TavRegistryEntry &entry) const;
    // What a screen reader says of a row.
    QString accessibleNameForOutlineItem(TavRegistryOutlineItem &item) const;
    QString accessibleNameForEntry(const TavRegistryEntry &entry, const QString &name) const;

    void windowDidLoad();
    void updatePlaneList();
    void setRegistryPlane(const QString &plane, bool updatePopup);
    void planePopupChanged();
    void selectEntryPath(const std::optional<TavRegistryEntryPath> &path);
    void goToEntryPath(std::optional<TavRegistryEntryPath> path, bool scrollToVisible,
                       bool beepOnFail);
    void goToRegistryPath(const QString &path);
    void setSelectedEntry(const EntryRef &entry);
    void clearObjectInfo();
    void updateStatusBar();
    void refreshDisplay();
    void refreshPropertiesOutlineView();
    bool browserIsVisible() const;
    bool isExplorerFirstResponder() const;
    void makeExplorerFirstResponder();
    void changeView();
    void outlineView();
    void browserView();
    void outlineViewSelectionChanged();
    void browserSelectionChanged();

    // The paths of the selected entry.
    void populatePathsPopup(const EntryRef &entry);
    void addPathsNote(const QString &text);
    void pathPopupChanged(int item);
    // None for no other path, or for one of another plane where the same one is asked for.
    std::optional<TavRegistryEntryPath> nextEntryPathInPlane(bool inSamePlane) const;
    std::optional<TavRegistryEntryPath> prevEntryPathInPlane(bool inSamePlane) const;
    void goToNextPathInPlane();
    void goToPrevPathInPlane();
    void goToNextPathCrossPlane();
    void goToPrevPathCrossPlane();

    void selectParent();
    void selectChild();
    void selectNextSibling();
    void selectPreviousSibling();
    void goBack(); // to the selection before
    void goForward();
    void jumpToSelection();
    void selectPropertyKeyIndexPath(const std::vector<PropertyPathMember> &path);
    void paste();
    void promptForPath();
    void cancelGoToPath();
    void performGoToPath();
    void promptForBookmark();
    void cancelAddBookmark();
    void performAddBookmark();
    void didEndSheet(const QDialog &sheet, int returnCode);
    void goToBookmark(const QAction &item); // whose data are the bookmark's record
    void goToNextSnapshot();
    void goToPrevSnapshot();

    void synchronizeWindowTitleWithDocumentName() override;
    void noteDataStoreOutOfDate() override;
    void noteDataStoreChanged() override;
    void noteDataStoreObjectChanged() override;
    void noteDataStoreObjectsTerminated() override;
    void noteDataStoreClearedTerminatedObjects() override;
    void dataViewOptionsChanged(TavRegistryProperty *item) override;
    void propertiesViewSelectionChanged() override;
    Reading readingOfAttribute(const QString &attribute) const override;
    void readAttribute(const QString &attribute) override;
    void windowDidBecomeKey();

    void newDocumentWindow();
    void openInNewWindow(); // what is selected
    void update();
    void updateSelectedObject();
    void readSelectedAttribute();
    void clearTerminatedObjects();
    void toggleAutoupdate();
    void toggleTimedUpdate();
    void changeTimedUpdate();
    void cancelChangeTimedUpdate();
    void performChangeTimedUpdate();
    void toggleShowTerminatedObjects();
    void expandAll();
    void collapseAll();
    void collapseAroundSelection();
    void undo(); // the last change of formats that was made from this window
    void redo();
    void copy();
    void copyName();
    void copyPath();
    void copyClass();
    void copyBundle();
    void revealSelectionBundleInNavro();

    // Has a menu item show the state. Whether its command can run now; others' can always.
    bool validateMenuItem(QAction &item) const;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void loadWindow();
    void connectOutlets();
    void connectActions();
    void setUpFormats();
    void showProperties(const PropertyRef &previousRoot);
    void setUpAttributeRequests();
    void showAttributeRead(quint64 entryTag, const QString &attribute);
    bool canReadSelectedAttribute() const;
    void selectPropertyItem(TavRegistryProperty *item); // for its format to be chosen
    void setUpViews();
    void setUpBrowser();
    void setUpFind();
    void setFindShortcuts();
    std::array<std::pair<FindOption, QCheckBox *>, 8> findCheckboxes() const;
    void findObjectsMatching(const QString &query, LongWork &work);
    bool isQuery(const QString &query) const;
    void showFound(QString query, EntrySet found, QHash<QString, EntrySet> parents);
    void updateFindStepper();
    bool canFindInAnyPlane() const;
    void endSearch();
    bool drawerIsOpen() const;
    void openDrawer();
    void closeDrawer();
    void drawerVisibilityChanged();
    TavRegistryEntryPath findStartingPath() const;
    TavRegistryEntryPath selectEntryPathInBrowser(const TavRegistryEntryPath &path,
                                                  bool scrollToVisible);
    void scrollBrowserToPath(int selectedColumns, bool isWholePath);
    void selectSiblingInBrowser(int step);
    void connectNavigationControls();
    void connectContextMenus();
    void showEntryMenu(const QPoint &place);
    TavWindowController &addWindow(); // of the same document, shown
    void selectInPathsPopup(const TavRegistryEntryPath &path);
    bool canStepThroughPaths() const;
    std::optional<TavRegistryEntryPath> entryPathOfItem(int item, bool inSamePlane) const;
    void goToPath(const std::optional<TavRegistryEntryPath> &path);
    void goToVisited(const TavRegistryEntryPath &path);
    void scrollToSelectedProperty();
    void loadGoToPathSheet();
    void loadAddBookmarkSheet();
    void addBookmark();
    void showObjectInfo(const TavRegistryEntry &entry);
    static std::span<const MenuCommand> menuCommands();
    void perform(QAction &item);
    bool takeKey(const QKeyEvent &key); // one that the view with the keyboard is not to have
    bool isKeyOfCommand(const QKeyEvent &key) const;
    void validateActions(); // whenever the state that they show has changed
    static bool canPaste();
    bool hasBundle() const;
    bool hasBundlePath() const;
    bool canSelectChild() const;
    bool canSelectNextSibling() const;
    bool canSelectPreviousSibling() const;
    QString pollIntervalText() const;
    QString undoTitle() const;
    QString redoTitle() const;
    QString toggleTimedUpdateTitle() const;
    QString changeTimedUpdateTitle() const;
    QString toggleShowTerminatedObjectsTitle() const;
    QString newDocumentWindowTitle() const;
    enum class ViewStyle : quint8 { Outline, Browser };
    void showView(ViewStyle style);
    void arrangeSplitView(Qt::Orientation panes);
    void setPaneMargins(bool isSideBySide);
    QWidget *explorerView() const;        // the one that is seen
    QDialog *loadSheet(const char *name); // owned by the window
    void loadTimedUpdateSheet();
    std::vector<TavRegistryEntryPath> entryPathsForRegistryPath(const QString &path) const;
    void reportMultipleMatches();
    void reportPathToNowhere(const QString &path); // for a while

    TavDocument &document_;
    std::shared_ptr<TavDataStore> dataStore_;
    bool showTerminatedObjects_ = true;
    bool showNumPaths_ = false;
    QString registryPlane_;
    std::optional<TavRegistryEntryPath> selectedEntryPath_;
    EntryRef selectedEntry_;
    mutable QHash<QString, std::shared_ptr<TavRegistryOutlineItem>> rootOutlineItemsInPlanes_;
    PropertyRef rootPropertyItem_;
    QString findQuery_; // null: no search
    std::optional<EntrySet> foundObjects_;
    QHash<QString, EntrySet> parentsOfFoundObjectsInPlanes_;
    std::unique_ptr<FoundEntryPaths> foundEntryPaths_; // null: no search
    FindOptions findOptions_ = FindOption::Name;

    std::unique_ptr<TavRegistryOutlineViewDataSource> outlineDataSource_;
    std::unique_ptr<TavPropertiesOutlineViewDataSource> propertiesDataSource_;
    std::unique_ptr<TavBrowserDelegate> browserDelegate_;
    std::unique_ptr<TavFindTableViewDataSource> findDataSource_;
    std::unique_ptr<AttributeRequests> attributeRequests_;
    std::unique_ptr<QUndoStack> undoStack_;
    std::unique_ptr<QMainWindow> window_; // goes first: its views use what is above
    std::unique_ptr<PlaneMenu> planeMenu_;
    std::unique_ptr<SplitViewAutosave> splitViewAutosave_;

    std::vector<std::optional<TavRegistryEntryPath>> entryPathsOfItems_; // none: a separator
    std::unique_ptr<SelectionHistory> history_;
    bool isRevisiting_ = false; // on the way back or forward
    QHash<QAction *, const MenuCommand *> commandsOfItems_;
    QComboBox *planeListButton_ = nullptr;
    SegmentedControl *viewStyleControl_ = nullptr;
    SearchField *findField_ = nullptr;
    Stepper *findStepper_ = nullptr;
    QComboBox *entryPathsButton_ = nullptr;
    FactField *objectNameField_ = nullptr;
    FactField *objectInheritanceField_ = nullptr;
    FactField *objectBundleField_ = nullptr;
    FactField *objectRetainCountField_ = nullptr;
    FactField *objectBusyCountField_ = nullptr;
    QWidget *dxserviceAttributesView_ = nullptr;
    QCheckBox *objectRegisteredCell_ = nullptr;
    QCheckBox *objectMatchedCell_ = nullptr;
    QCheckBox *objectActiveCell_ = nullptr;
    QSplitter *explorerSplitView_ = nullptr;
    QStackedWidget *explorerTabView_ = nullptr;
    ColumnBrowser *registryBrowser_ = nullptr;
    TavRegistryOutlineView *registryOutlineView_ = nullptr;
    TavPropertiesOutlineView *propertiesOutlineView_ = nullptr;
    QToolButton *findOptionsDrawerButton_ = nullptr;
    QDockWidget *findOptionsDrawer_ = nullptr;
    QCheckBox *filteredFindCheckbox_ = nullptr;
    QCheckBox *findNameCheckbox_ = nullptr;
    QCheckBox *findClassCheckbox_ = nullptr;
    QCheckBox *findInheritanceCheckbox_ = nullptr;
    QCheckBox *findBundleIDCheckbox_ = nullptr;
    QCheckBox *findKeysCheckbox_ = nullptr;
    QCheckBox *findValuesCheckbox_ = nullptr;
    QCheckBox *findKeyValueCheckbox_ = nullptr;
    QCheckBox *findSpecialCheckbox_ = nullptr;
    QLineEdit *findPreviewField_ = nullptr;
    QTableView *findTableView_ = nullptr;
    ViewNote *nothingFoundNote_ = nullptr;
    IncompleteBar *incompleteBar_ = nullptr;
    QDialog *goToPathSheet_ = nullptr; // the sheets are loaded on first use
    QLineEdit *goToPathField_ = nullptr;
    QPushButton *goToPathCancelButton_ = nullptr;
    QPushButton *goToPathGoButton_ = nullptr;
    QDialog *addBookmarkSheet_ = nullptr;
    QLineEdit *addBookmarkNameField_ = nullptr;
    QCheckBox *addBookmarkDefaultCheckbox_ = nullptr;
    QPushButton *addBookmarkCancelButton_ = nullptr;
    QPushButton *addBookmarkOKButton_ = nullptr;
    QDialog *timedUpdateSheet_ = nullptr;
    QLineEdit *timedUpdateField_ = nullptr;
    QPushButton *timedUpdateCancelButton_ = nullptr;
    QPushButton *timedUpdateSetButton_ = nullptr;
    QLabel *systemStatusField1_ = nullptr;
    QLabel *systemStatusField2_ = nullptr;
    QLabel *systemStatusField3_ = nullptr;
};
