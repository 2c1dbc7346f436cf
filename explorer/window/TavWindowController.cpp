// SPDX-License-Identifier: Apache-2.0
#include "explorer/window/TavWindowController.h"

#include "activity/DocumentActivity.h"
#include "display/views/TavPropertiesOutlineView.h"
#include "explorer/Explanations.h"
#include "explorer/ExplorerBookmarks.h"
#include "explorer/comparison/ComparisonDocument.h"
#include "explorer/export/ExportCommands.h"
#include "explorer/findings/DocumentFindings.h"
#include "explorer/selection/EntryChooser.h"
#include "explorer/selection/HistoryButtons.h"
#include "explorer/selection/PathsPopUp.h"
#include "explorer/selection/PlaneMenu.h"
#include "explorer/selection/RegistryPathReader.h"
#include "explorer/sheets/WindowSheets.h"
#include "explorer/tree/TavRegistryOutlineView.h"
#include "explorer/window/EntryCommands.h"
#include "explorer/window/EntryFacts.h"
#include "explorer/window/MenuCommands.h"
#include "explorer/window/RowPreferences.h"
#include "explorer/window/ValuePreferences.h"
#include "explorer/window/WindowDocks.h"
#include "explorer/window/WindowStatus.h"
#include "platform/desktop/InterfaceLoader.h"
#include "platform/host/SystemBeep.h"
#include "platform/preferences/PreferenceKeys.h"
#include "platform/preferences/PreferencesStore.h"
#include "platform/runloop/Disposal.h"
#include "platform/widgets/ColumnBrowser.h"
#include "platform/widgets/FactField.h"
#include "platform/widgets/ReadOnlyCheckBox.h"
#include "platform/widgets/SearchField.h"
#include "platform/widgets/SegmentedControl.h"
#include "platform/widgets/Stepper.h"
#include "platform/widgets/VisibleText.h"
#include "store/DataStoreNotifications.h"
#include "store/TavDataStore.h"
#include "store/TavDocument.h"

#include <QComboBox>
#include <QKeyEvent>
#include <QMainWindow>
#include <QMenu>
#include <QTableView>
#include <QTimer>

namespace {
std::unique_ptr<QMainWindow> loadWindow()
{
    InterfaceLoader loader;
    loader.addWidgetClass<SegmentedControl>();
    loader.addWidgetClass<FactField>();
    loader.addWidgetClass<ReadOnlyCheckBox>();
    loader.addWidgetClass<TavRegistryOutlineView>();
    loader.addWidgetClass<TavPropertiesOutlineView>();
    loader.addWidgetClass<ColumnBrowser>();
    loader.addWidgetClass<SearchField>();
    loader.addWidgetClass<Stepper>();
    auto *const window =
        qobject_cast<QMainWindow *>(loader.load(QStringLiteral("Explorer")).release());
    Q_ASSERT(window);
    return std::unique_ptr<QMainWindow>(window);
}

TavWindowController &addWindow(TavDocument &document)
{
    auto controller = std::make_unique<TavWindowController>(document);
    TavWindowController &added = *controller;
    document.addWindowController(std::move(controller));
    added.showWindow();
    return added;
}
} // namespace

TavWindowController::TavWindowController(TavDocument &document)
    : document_(document)
    , comparisonDocument_(dynamic_cast<ComparisonDocument *>(&document))
    , dataStore_(document.dataStore())
    , activity_(DocumentActivity::of(document))
    , findings_(DocumentFindings::of(document))
    , showNumPaths_(PreferencesStore::standard().flag(PreferenceKeys::showNumPaths))
    , rows_(std::make_unique<RowPreferences>())
    , values_(std::make_unique<ValuePreferences>())
    , window_(loadWindow())
{
    makeParts();
    connectParts();
    windowDidLoad();
}

TavWindowController::~TavWindowController()
{
    dataStore_->removeClient(this);
    finder_->windowWillClose();
    views_->windowWillClose();
    sheets_.reset();
    exporter_.reset();
    planeMenu_.reset();
    window_.reset(); // its views use the parts
    if (dataStore_->registryEntries().size() >= Disposal::worthwhile)
        views_->disposeOfNodes();
}

void TavWindowController::makeParts()
{
    QMainWindow &window = *window_;
    planeMenu_ =
        std::make_unique<PlaneMenu>(*InterfaceLoader::outlet<QComboBox>(window, "planeListButton"),
                                    *InterfaceLoader::outlet<QMenu>(window, "planeMenu"));
    views_ = std::make_unique<ExplorerViews>(window, *this);
    selection_ = std::make_unique<EntrySelection>(dataStore_, *views_, *planeMenu_);
    pathsPopUp_ = std::make_unique<PathsPopUp>(
        *InterfaceLoader::outlet<QComboBox>(window, "entryPathsButton"), *this);
    properties_ = std::make_unique<PropertiesPane>(window, dataStore_, comparison(),
                                                   activity_.plots(), *values_);
    facts_ = std::make_unique<EntryFacts>(window);
    status_ = std::make_unique<WindowStatus>(window);
    Explanations::addTo(window);
    finder_ = std::make_unique<FindController>(window, dataStore_, *this, *selection_, *views_);
    sheets_ = std::make_unique<WindowSheets>(window, dataStore_, *selection_);
    entryCommands_ = std::make_unique<EntryCommands>(window, *selection_, *properties_);
    exporter_ =
        std::make_unique<ExportCommands>(window, dataStore_, *selection_, finder_->session());
    docks_ = std::make_unique<WindowDocks>(window, activity_, findings_, dataStore_);
    menuCommands_ = std::make_unique<MenuCommands>(*this);
}

void TavWindowController::connectParts()
{
    connect(selection_.get(), &EntrySelection::planeChanged, this,
            &TavWindowController::planeChanged);
    connect(selection_.get(), &EntrySelection::entryChanged, this,
            &TavWindowController::showSelectedEntry);
    connect(selection_.get(), &EntrySelection::entryPathChanged, this,
            [this] { pathsPopUp_->select(*selectedEntryPath()); });
    connect(selection_.get(), &EntrySelection::pathFound, status_.get(),
            &WindowStatus::reportPathFound);
    connect(selection_.get(), &EntrySelection::pathNotFound, this, [this](const QString &path) {
        const auto problem = RegistryPathReader(dataStore_).problemOfWhole(path);
        status_->reportPathNotFound(problem ? problem->message
                                            : tr("“%1” leads nowhere").arg(visibleText(path)));
    });
    connect(selection_.get(), &EntrySelection::entriesFound, this,
            &TavWindowController::offerEntries);
    connect(properties_.get(), &PropertiesPane::linkFollowed, this,
            &TavWindowController::followLink);
    connect(&facts_->bundleField(), &FactField::linkFollowed, this, [this](bool inNewWindow) {
        if (TavRegistryEntry *const module = moduleOfSelection())
            followLink(module->shared_from_this(), inNewWindow);
    });
    connect(pathsPopUp_.get(), &PathsPopUp::pathChosen, this,
            [this](const TavRegistryEntryPath &path) { goToEntryPath(path, true, true); });
    connect(views_.get(), &ExplorerViews::styleChosen, this, &TavWindowController::showView);
    connect(rows_.get(), &RowPreferences::changed, this, [this] {
        activity_.recentChanges().setDuration(rows_->recentDuration());
        redisplayRows();
        menuCommands_->validate();
    });
    activity_.recentChanges().setDuration(rows_->recentDuration());
    connect(&activity_.recentChanges(), &RecentChanges::changed, this, [this] {
        if (rows_->marksRecentChanges() && !dataStore_->isPaused())
            redisplayRows();
    });
    eventsHeld_ = NotificationCenter::defaultCenter().observe(
        DataStoreNotifications::eventsHeld, dataStore_.get(), [this](const auto &) {
            status_->updateStatusBar(*dataStore_);
            properties_->updateFollowing();
            docks_->updatePause();
        });
    connect(properties_.get(), &PropertiesPane::followingStopped, status_.get(),
            &WindowStatus::reportFollowingStopped);
    connect(properties_.get(), &PropertiesPane::plotAdded, docks_.get(), &WindowDocks::showPlots);
    activity_.plots().setInterval(values_->interval());
    connect(values_.get(), &ValuePreferences::changed, this, [this] {
        activity_.plots().setInterval(values_->interval());
        menuCommands_->validate();
    });
    deviceNamesFound_ = NotificationCenter::defaultCenter().observe(
        DataStoreNotifications::deviceNamesFound, dataStore_.get(),
        [this](const auto &) { noteDeviceNamesFound(); });
    connect(status_.get(), &WindowStatus::tryAgainRequested, this,
            [this] { dataStore_->updateTryingAgain(); });
    connect(properties_.get(), &PropertiesPane::attributeRead, this,
            &TavWindowController::showAttributeRead);

    MenuCommands *const commands = menuCommands_.get();
    const auto showEntryMenu = [this](const QPoint &place) {
        menuCommands_->validate();
        entryCommands_->showEntryMenu(place);
    };
    connect(views_.get(), &ExplorerViews::contextMenuRequested, commands, showEntryMenu);
    connect(finder_.get(), &FindController::contextMenuRequested, commands, showEntryMenu);
    connect(finder_.get(), &FindController::shownEntriesChanged, commands, &MenuCommands::validate);
    connect(selection_.get(), &EntrySelection::historyChanged, commands, &MenuCommands::validate);
    connect(properties_.get(), &PropertiesPane::undoStackChanged, commands,
            &MenuCommands::validate);
    connect(sheets_.get(), &WindowSheets::performed, commands, &MenuCommands::validate);
    connect(docks_.get(), &WindowDocks::visibilityChanged, commands, &MenuCommands::validate);
    connect(docks_.get(), &WindowDocks::entryChosen, this, &TavWindowController::goToEntryOfLog);
    connect(docks_.get(), &WindowDocks::propertyChosen, this,
            [this](quint64 tag, const QString &keyPath) {
                goToEntryOfLog(tag);
                properties_->goToAttribute(keyPath);
            });
    connect(status_.get(), &WindowStatus::findingsRequested, docks_.get(),
            &WindowDocks::toggleFindings);
    connect(&findings_, &DocumentFindings::changed, this,
            &TavWindowController::noteFindingsChanged);
    connect(&findings_, &DocumentFindings::checked, this, &TavWindowController::redisplayRows);
    noteFindingsChanged();

    auto *const buttons = new HistoryButtons(*window_);
    connect(buttons, &HistoryButtons::backPressed, this, &TavWindowController::goBack);
    connect(buttons, &HistoryButtons::forwardPressed, this, &TavWindowController::goForward);
    window_->installEventFilter(this);
    finder_->results().installEventFilter(this);
}

void TavWindowController::windowDidLoad()
{
    ExplorerBookmarks *const bookmarks = ExplorerBookmarks::shared();
    const QString bookmark = bookmarks ? bookmarks->defaultBookmarkPath() : QString();
    planeMenu_->updatePlaneList(dataStore_->registryPlanes());
    finder_->loadDefaultFindOptions();
    facts_->clearObjectInfo();
    const PreferencesStore &preferences = PreferencesStore::standard();
    const QString plane = preferences.string(PreferenceKeys::defaultPlane);
    setRegistryPlane(plane.isEmpty() ? QString(PreferenceKeys::defaultPlane.defaultValue) : plane,
                     true);
    TavRegistryEntry *const root = dataStore_->registryRoot();
    // New nodes are expanded, so the tree shows open from top to bottom.
    goToEntryPath(root ? root->entryPathInPlane(registryPlane(), 0) : std::nullopt, true, false);
    if (!bookmark.isNull())
        QTimer::singleShot(0, this, [this, bookmark] { goToRegistryPath(bookmark); });
    if (preferences.string(PreferenceKeys::defaultView) == QLatin1String("outline"))
        outlineView();
    else
        browserView();
    if (comparisonDocument_)
        addComparisonBar();
    status_->updateStatusBar(*dataStore_);
    synchronizeWindowTitleWithDocumentName();
    QTimer::singleShot(0, this, &TavWindowController::makeExplorerFirstResponder);
}

QWidget *TavWindowController::documentWindow() const
{
    return window_.get();
}

void TavWindowController::showWindow()
{
    window_->show();
    window_->raise();
    window_->activateWindow();
}

TavDataStore *TavWindowController::dataStore() const
{
    return document_.dataStore().get();
}

TavRegistryOutlineItem *TavWindowController::rootOutlineItem() const
{
    return views_->rootOutlineItem();
}

void TavWindowController::newDocumentWindow()
{
    addWindow(document_);
}

void TavWindowController::offerEntries(const std::vector<EntryRef> &entries)
{
    auto *const chooser = new EntryChooser(entries, registryPlane(), *window_);
    connect(chooser, &EntryChooser::entryChosen, selection_.get(),
            [this](const EntryRef &entry) { selection_->goToEntry(*entry); });
    chooser->popUp();
}

// Also what has gone, as long as the store has it.
void TavWindowController::goToEntryOfLog(quint64 tag)
{
    TavRegistryEntry *const entry = tag == 0 ? nullptr : dataStore_->entryWithTag(tag);
    if (entry)
        selection_->goToEntry(*entry);
    else
        status_->reportPathNotFound(tr("This object is no longer in the registry"));
}

TavRegistryEntry *TavWindowController::moduleOfSelection() const
{
    const TavRegistryEntry *const entry = selectedEntry();
    TavRegistryEntry *const module =
        entry ? dataStore_->locator().atLink(QStringLiteral("module/") + entry->bundleID())
              : nullptr;
    return module == entry ? nullptr : module;
}

void TavWindowController::followLink(const EntryRef &target, bool inNewWindow)
{
    if (!inNewWindow)
        return selection_->goToEntry(*target);
    TavWindowController &added = addWindow(document_);
    QTimer::singleShot(0, &added, [&added, target] { added.selection().goToEntry(*target); });
}

void TavWindowController::openInNewWindow()
{
    TavWindowController &added = addWindow(document_);
    // Later: the window is about to go to the default bookmark by itself.
    QTimer::singleShot(
        0, &added, [&added, path = selectedEntryPath()] { added.goToEntryPath(path, true, true); });
}

bool TavWindowController::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == window_.get() && event->type() == QEvent::WindowActivate) {
        properties_->propertiesViewSelectionChanged();
        menuCommands_->validate();
    }
    if (watched == window_.get() && event->type() == QEvent::Paint && !isPainted_) {
        isPainted_ = true;
        QTimer::singleShot(0, this, &TavWindowController::lookUpDeviceNames);
    }
    if (event->type() != QEvent::KeyPress)
        return QObject::eventFilter(watched, event);
    const auto &key = *static_cast<QKeyEvent *>(event);
    const bool isAmongEntries = isExplorerFirstResponder() || finder_->results().hasFocus();
    if (key.key() == Qt::Key_Escape && foundObjects() && isAmongEntries) {
        finder_->cancelSearch();
        return true;
    }
    // The keys of commands that can run never come here.
    const bool isRefused = menuCommands_->isKeyOfCommand(key);
    if (isRefused)
        SystemBeep::beep();
    return isRefused;
}

bool TavWindowController::validateMenuItem(QAction &item) const
{
    return menuCommands_->validateMenuItem(item);
}
