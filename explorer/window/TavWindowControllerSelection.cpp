#include "explorer/ExplorerLogging.h"
#include "explorer/find/TavFindTableViewDataSource.h"
#include "explorer/selection/PlaneMenu.h"
#include "explorer/selection/RegistryPathReader.h"
#include "explorer/selection/SelectionHistory.h"
#include "explorer/tree/TavRegistryOutlineItem.h"
#include "explorer/tree/TavRegistryOutlineView.h"
#include "explorer/tree/TavRegistryOutlineViewDataSource.h"
#include "explorer/window/Explanations.h"
#include "explorer/window/TavWindowController.h"
#include "model/EntryPathList.h"
#include "platform/host/SystemBeep.h"
#include "platform/widgets/ColumnBrowser.h"
#include "platform/widgets/VisibleText.h"
#include "store/TavDataStore.h"

#include <QComboBox>
#include <QMainWindow>
#include <QMessageBox>
#include <QStandardItemModel>
#include <QStatusBar>

namespace {
constexpr int messageMilliseconds = 10'000;
} // namespace

void TavWindowController::updatePlaneList()
{
    QList<QStandardItem *> planes; // added together, for the plane menu is rebuilt each time
    for (const QString &plane : dataStore_->registryPlanes()) {
        if (plane == QLatin1String("DxService"))
            continue;
        const int tag = static_cast<int>(planes.size()) + 1;
        auto *const item = new QStandardItem(plane);
        item->setToolTip(Explanations::ofPlane(plane));
        item->setData(tag, PlaneMenu::TagRole);
        item->setData(QString::number(tag + 1), PlaneMenu::KeyEquivalentRole);
        planes.append(item);
    }
    auto *const model = qobject_cast<QStandardItemModel *>(planeListButton_->model());
    model->invisibleRootItem()->appendRows(planes);
}

void TavWindowController::setRegistryPlane(const QString &plane, bool updatePopup)
{
    if (plane.isNull())
        qCInfo(explorerLog, "No plane for setRegistryPlane:updatePopup:!\n");
    if (plane == registryPlane_)
        return;
    registryPlane_ = plane;
    if (updatePopup) {
        if (planeListButton_->findText(plane) < 0)
            planeListButton_->addItem(plane);
        planeListButton_->setCurrentIndex(planeListButton_->findText(plane));
    }
    updateFindStepper();
    registryBrowser_->reloadColumn(0);
    registryOutlineView_->reloadData();
    findDataSource_->redisplay();
    synchronizeWindowTitleWithDocumentName();
}

void TavWindowController::planePopupChanged()
{
    const QString plane = planeListButton_->currentText();
    if (plane == registryPlane_)
        return;
    const auto paths = selectedEntry_ ? EntryPathList(*selectedEntry_, plane).paths()
                                      : std::vector<TavRegistryEntryPath>();
    setRegistryPlane(plane, false);
    TavRegistryEntry *const root = dataStore_->registryRoot();
    std::optional<TavRegistryEntryPath> path;
    if (!paths.empty())
        path = paths.front();
    else if (root)
        path = TavRegistryEntryPath(plane, {root->shared_from_this()});
    goToEntryPath(path, true, false);
    // Where the filter hides it, it is the selection all the same: a refresh would go back to the
    // old plane otherwise.
    if (selectedEntryPath_ && selectedEntryPath_->plane() != plane)
        selectEntryPath(path);
    if (paths.empty())
        registryOutlineView_->setAllRowsExpanded(true);
}

void TavWindowController::selectEntryPath(const std::optional<TavRegistryEntryPath> &path)
{
    if (!path || path->length() == 0) {
        selectedEntryPath_.reset();
        setSelectedEntry(nullptr);
        return;
    }
    if (selectedEntryPath_ == path)
        return;
    selectedEntryPath_ = path;
    if (!isRevisiting_)
        history_->visit(*path);
    setSelectedEntry(path->lastRegistryEntry());
    selectInPathsPopup(*path);
}

void TavWindowController::outlineViewSelectionChanged()
{
    const TavRegistryOutlineItem *const selected = outlineDataSource_->selectedItem();
    selectEntryPath(selected ? std::optional(selected->entryPath()) : std::nullopt);
}

// A copy of the path, for going to it may change the one selected.
void TavWindowController::goToEntryPath(std::optional<TavRegistryEntryPath> path,
                                        bool scrollToVisible, bool beepOnFail)
{
    if (!path || path->plane().isEmpty() || path->length() == 0) {
        registryBrowser_->reloadColumn(0);
        registryOutlineView_->deselectAll();
        selectEntryPath(std::nullopt);
        return;
    }
    const bool hadFocus = isExplorerFirstResponder();
    setRegistryPlane(path->plane(), true);
    const TavRegistryEntryPath selected =
        browserIsVisible() ? selectEntryPathInBrowser(*path, scrollToVisible)
                           : registryOutlineView_->selectItemAtEntryPath(*path, scrollToVisible);
    if (selected.length() > 0)
        selectEntryPath(selected);
    if (hadFocus)
        makeExplorerFirstResponder();
    if (beepOnFail && selected.length() < path->length())
        SystemBeep::beep();
}

void TavWindowController::goToRegistryPath(const QString &path)
{
    const auto paths = entryPathsForRegistryPath(path.isEmpty() ? registryPlane_ : path);
    if (paths.empty()) {
        SystemBeep::beep();
        reportPathToNowhere(path);
        return;
    }
    window_->statusBar()->clearMessage();
    if (paths.size() > 1)
        reportMultipleMatches();
    goToEntryPath(paths.front(), true, true);
}

void TavWindowController::reportPathToNowhere(const QString &path)
{
    const auto problem = RegistryPathReader(dataStore_).problemOfWhole(path);
    window_->statusBar()->showMessage(problem ? problem->message
                                              : tr("“%1” leads nowhere").arg(visibleText(path)),
                                      messageMilliseconds);
}

// In their order, those of all entries at the path that are written like it.
std::vector<TavRegistryEntryPath>
TavWindowController::entryPathsForRegistryPath(const QString &path) const
{
    std::vector<TavRegistryEntryPath> paths;
    for (TavRegistryEntry *entry : dataStore_->entriesMatchingRegistryPath(path).entries) {
        for (TavRegistryEntryPath &written : EntryPathList::writtenAs(*entry, path))
            paths.push_back(std::move(written));
    }
    std::sort(paths.begin(), paths.end(),
              [](const auto &a, const auto &b) { return a.compareToEntryPath(b) < 0; });
    return paths;
}

void TavWindowController::reportMultipleMatches()
{
    auto *const alert =
        new QMessageBox(QMessageBox::Information, tr("Multiple Matches for Path"),
                        tr("Multiple Matches for Path"), QMessageBox::Ok, window_.get());
    alert->setInformativeText(tr("The first object matching the path will be selected"));
    alert->setAttribute(Qt::WA_DeleteOnClose);
    alert->open();
}
