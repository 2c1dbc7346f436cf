#include "explorer/window/TavWindowController.h"

#include "display/views/TavPropertiesOutlineView.h"
#include "display/views/TavPropertiesOutlineViewDataSource.h"
#include "explorer/ExplorerBookmarks.h"
#include "explorer/columns/TavBrowserDelegate.h"
#include "explorer/find/FoundEntryPaths.h"
#include "explorer/find/TavFindTableViewDataSource.h"
#include "explorer/selection/PlaneMenu.h"
#include "explorer/selection/SelectionHistory.h"
#include "explorer/tree/TavRegistryOutlineItem.h"
#include "explorer/tree/TavRegistryOutlineView.h"
#include "explorer/tree/TavRegistryOutlineViewDataSource.h"
#include "explorer/window/AttributeRequests.h"
#include "explorer/window/Explanations.h"
#include "explorer/window/IncompleteBar.h"
#include "platform/desktop/InterfaceLoader.h"
#include "platform/desktop/SplitViewAutosave.h"
#include "platform/preferences/PreferencesStore.h"
#include "platform/runloop/Disposal.h"
#include "platform/widgets/ColumnBrowser.h"
#include "platform/widgets/FactField.h"
#include "platform/widgets/ReadOnlyCheckBox.h"
#include "platform/widgets/SearchField.h"
#include "platform/widgets/SegmentedControl.h"
#include "platform/widgets/Stepper.h"
#include "store/TavDataStore.h"
#include "store/TavDocument.h"

#include <QApplication>
#include <QBoxLayout>
#include <QCheckBox>
#include <QComboBox>
#include <QDockWidget>
#include <QLabel>
#include <QMainWindow>
#include <QMenu>
#include <QSplitter>
#include <QStackedWidget>
#include <QStatusBar>
#include <QTimer>
#include <QUndoStack>

TavWindowController::TavWindowController(TavDocument &document)
    : document_(document)
    , dataStore_(document.dataStore())
    , showNumPaths_(PreferencesStore::standard().flag(QStringLiteral("ShowNumPaths")))
    , outlineDataSource_(std::make_unique<TavRegistryOutlineViewDataSource>(*this))
    , propertiesDataSource_(std::make_unique<TavPropertiesOutlineViewDataSource>(*this))
    , browserDelegate_(std::make_unique<TavBrowserDelegate>(*this))
    , attributeRequests_(std::make_unique<AttributeRequests>(dataStore_))
    , undoStack_(std::make_unique<QUndoStack>())
    , history_(std::make_unique<SelectionHistory>())
{
    loadWindow();
    connectOutlets();
    setUpViews();
    setUpFind();
    connectActions();
    connectNavigationControls();
    connectContextMenus();
    setUpFormats();
    setUpAttributeRequests();
    windowDidLoad();
}

TavWindowController::~TavWindowController()
{
    dataStore_->removeClient(this);
    findOptionsDrawer_->disconnect(this); // it is hidden as the window goes
    if (dataStore_->registryEntries().size() < Disposal::worthwhile)
        return;
    // The views show the nodes.
    splitViewAutosave_.reset();
    planeMenu_.reset();
    window_.reset();
    for (auto &item : rootOutlineItemsInPlanes_)
        Disposal::later(std::move(item));
}

void TavWindowController::loadWindow()
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
    window_.reset(qobject_cast<QMainWindow *>(loader.load(QStringLiteral("Explorer")).release()));
    Q_ASSERT(window_);
}

void TavWindowController::connectOutlets()
{
    const auto outlet = [this](auto *&field, const char *name) {
        field = InterfaceLoader::outlet<std::remove_reference_t<decltype(*field)>>(*window_, name);
    };
    outlet(planeListButton_, "planeListButton");
    outlet(viewStyleControl_, "viewStyleControl");
    outlet(findField_, "findField");
    outlet(entryPathsButton_, "entryPathsButton");
    outlet(explorerSplitView_, "explorerSplitView");
    outlet(explorerTabView_, "explorerTabView");
    outlet(registryBrowser_, "registryBrowser");
    outlet(objectNameField_, "objectNameField");
    outlet(objectInheritanceField_, "objectInheritanceField");
    outlet(objectBundleField_, "objectBundleField");
    outlet(objectRetainCountField_, "objectRetainCountField");
    outlet(objectBusyCountField_, "objectBusyCountField");
    outlet(dxserviceAttributesView_, "dxserviceAttributesView");
    outlet(objectRegisteredCell_, "objectRegisteredCell");
    outlet(objectMatchedCell_, "objectMatchedCell");
    outlet(objectActiveCell_, "objectActiveCell");
    outlet(registryOutlineView_, "registryOutlineView");
    outlet(propertiesOutlineView_, "propertiesOutlineView");
    outlet(systemStatusField1_, "systemStatusField1");
    outlet(systemStatusField2_, "systemStatusField2");
    outlet(systemStatusField3_, "systemStatusField3");
    window_->statusBar()->addWidget(InterfaceLoader::outlet<QWidget>(*window_, "statusFields"), 1);
}

void TavWindowController::setUpViews()
{
    registryOutlineView_->setDataSource(*outlineDataSource_);
    propertiesOutlineView_->setDataSource(*propertiesDataSource_);
    setUpBrowser();

    incompleteBar_ = new IncompleteBar;
    static_cast<QBoxLayout *>(window_->centralWidget()->layout())->insertWidget(1, incompleteBar_);
    connect(incompleteBar_, &IncompleteBar::tryAgainRequested, this,
            [this] { dataStore_->updateTryingAgain(); });

    explorerSplitView_->setStretchFactor(0, 0);
    explorerSplitView_->setStretchFactor(1, 1);
    splitViewAutosave_ = std::make_unique<SplitViewAutosave>(*explorerSplitView_);
    viewStyleControl_->setUp();
    connect(viewStyleControl_, &SegmentedControl::segmentChosen, this,
            &TavWindowController::changeView);

    // The rows below stay where they are when these facts come and go.
    QSizePolicy policy = dxserviceAttributesView_->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    dxserviceAttributesView_->setSizePolicy(policy);
    // It is no part of the grid above, yet its label ends where those do.
    const auto *const label = InterfaceLoader::outlet<QLabel>(*window_, "objectRetainCountLabel");
    InterfaceLoader::outlet<QLabel>(*window_, "objectBusyCountLabel")
        ->setMinimumWidth(label->sizeHint().width());
    objectBusyCountField_->setMaximumWidth(
        objectBusyCountField_->fontMetrics().horizontalAdvance(QStringLiteral("4294967295 ")));
    Explanations::addTo(*window_);

    planeListButton_->setItemData(0, Explanations::ofPlane(planeListButton_->itemText(0)),
                                  Qt::ToolTipRole);
    planeListButton_->setItemData(0, 0, PlaneMenu::TagRole);
    planeListButton_->setItemData(0, QStringLiteral("1"), PlaneMenu::KeyEquivalentRole);
    planeMenu_ = std::make_unique<PlaneMenu>(
        *planeListButton_, *InterfaceLoader::outlet<QMenu>(*window_, "planeMenu"));
    connect(planeListButton_, &QComboBox::activated, this, &TavWindowController::planePopupChanged);
    connect(planeMenu_.get(), &PlaneMenu::planeChosen, this,
            &TavWindowController::planePopupChanged);
}

void TavWindowController::windowDidLoad()
{
    ExplorerBookmarks *const bookmarks = ExplorerBookmarks::shared();
    const QString bookmark = bookmarks ? bookmarks->defaultBookmarkPath() : QString();
    updatePlaneList();
    loadDefaultFindOptions();
    clearObjectInfo();
    const PreferencesStore &preferences = PreferencesStore::standard();
    const QString planeKey = QStringLiteral("DefaultPlane");
    const QString plane = preferences.string(planeKey);
    setRegistryPlane(plane.isEmpty() ? preferences.registeredString(planeKey) : plane, true);
    TavRegistryEntry *const root = dataStore_->registryRoot();
    // New nodes are expanded, so the tree shows open from top to bottom.
    goToEntryPath(root ? root->entryPathInPlane(registryPlane_, 0) : std::nullopt, true, false);
    if (!bookmark.isNull())
        QTimer::singleShot(0, this, [this, bookmark] { goToRegistryPath(bookmark); });
    if (preferences.string(QStringLiteral("DefaultView")) == QLatin1String("outline"))
        outlineView();
    else
        browserView();
    updateStatusBar();
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

TavRegistryOutlineItem *TavWindowController::rootOutlineItem() const
{
    auto &item = rootOutlineItemsInPlanes_[registryPlane_];
    TavRegistryEntry *const root = dataStore_->registryRoot();
    if (!item && root)
        item = std::make_shared<TavRegistryOutlineItem>(*this, nullptr, registryPlane_,
                                                        root->shared_from_this());
    return item.get();
}

TavDataStore *TavWindowController::dataStore() const
{
    return document_.dataStore().get();
}

QString TavWindowController::registryPathForSelectedEntry() const
{
    return selectedEntryPath_ ? selectedEntryPath_->registryPath() : QString();
}
