// SPDX-License-Identifier: Apache-2.0
#include "explorer/selection/EntrySelection.h"

#include "explorer/ExplorerLogging.h"
#include "explorer/selection/PlaneMenu.h"
#include "explorer/views/ExplorerViews.h"
#include "model/EntryPathList.h"
#include "platform/host/SystemBeep.h"
#include "store/TavDataStore.h"

#include <QScopedValueRollback>

EntrySelection::EntrySelection(std::shared_ptr<TavDataStore> dataStore, ExplorerViews &views,
                               PlaneMenu &planeMenu)
    : dataStore_(std::move(dataStore))
    , views_(views)
    , planeMenu_(planeMenu)
{
    connect(&planeMenu_, &PlaneMenu::planeChosen, this, &EntrySelection::planePopupChanged);
    connect(&views_, &ExplorerViews::selectionChanged, this, &EntrySelection::selectEntryPath);
}

QString EntrySelection::registryPath() const
{
    return selectedEntryPath_ ? selectedEntryPath_->registryPath() : QString();
}

void EntrySelection::setRegistryPlane(const QString &plane, bool updatePopup)
{
    if (plane.isNull())
        qCInfo(explorerLog, "No plane for setRegistryPlane:updatePopup:!\n");
    if (plane == registryPlane_)
        return;
    registryPlane_ = plane;
    if (updatePopup)
        planeMenu_.showPlane(plane);
    Q_EMIT planeChanged();
}

void EntrySelection::planePopupChanged()
{
    const QString plane = planeMenu_.plane();
    if (plane == registryPlane_)
        return;
    const auto paths = selectedEntry_ ? EntryPathList(*selectedEntry_, plane).paths()
                                      : std::vector<TavRegistryEntryPath>();
    setRegistryPlane(plane, false);
    TavRegistryEntry *const root = dataStore_->registryRoot();
    Path path;
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
        views_.expandAll();
}

void EntrySelection::selectEntryPath(const Path &path)
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
        history_.visit(*path);
    setSelectedEntry(path->lastRegistryEntry());
    Q_EMIT entryPathChanged();
}

void EntrySelection::setSelectedEntry(const EntryRef &entry)
{
    selectedEntry_ = entry;
    Q_EMIT entryChanged();
}

// Takes a copy of the path, because going there may change the selected one.
void EntrySelection::goToEntryPath(Path path, bool scrollToVisible, bool beepOnFail)
{
    if (!path || path->plane().isEmpty() || path->length() == 0) {
        views_.selectNothing();
        selectEntryPath(std::nullopt);
        return;
    }
    const bool hadFocus = views_.isFirstResponder();
    setRegistryPlane(path->plane(), true);
    const TavRegistryEntryPath selected = views_.selectEntryPath(*path, scrollToVisible);
    if (selected.length() > 0)
        selectEntryPath(selected);
    if (hadFocus)
        views_.makeFirstResponder();
    if (beepOnFail && selected.length() < path->length())
        SystemBeep::beep();
}

void EntrySelection::goToRegistryPath(const QString &path)
{
    // The store logs what does not begin with a plane, but other names are no mistake.
    const bool isInPlane = path.contains(u':') || dataStore_->registryPlanes().contains(path);
    if (!isInPlane && !dataStore_->locator().find(path).empty())
        return goToNamedEntries(path);
    const auto paths = entryPathsForRegistryPath(path.isEmpty() ? registryPlane_ : path);
    if (paths.empty())
        return goToNamedEntries(path);
    Q_EMIT pathFound(paths.size() > 1);
    goToEntryPath(paths.front(), true, true);
}

void EntrySelection::goToNamedEntries(const QString &name)
{
    std::vector<EntryRef> entries;
    for (TavRegistryEntry *entry : dataStore_->locator().find(name))
        entries.push_back(entry->shared_from_this());
    if (entries.empty()) {
        SystemBeep::beep();
        Q_EMIT pathNotFound(name);
    } else if (entries.size() == 1) {
        Q_EMIT pathFound(false);
        goToEntry(*entries.front());
    } else {
        Q_EMIT entriesFound(entries);
    }
}

void EntrySelection::goToEntry(TavRegistryEntry &entry)
{
    Path path = entry.entryPathInPlane(registryPlane_, 0);
    for (const QString &plane : dataStore_->registryPlanes()) {
        if (!path)
            path = entry.entryPathInPlane(plane, 0);
    }
    if (path)
        goToEntryPath(path, true, true);
    else
        SystemBeep::beep();
}

// In their order, those of all entries at the path that are written like it.
std::vector<TavRegistryEntryPath>
EntrySelection::entryPathsForRegistryPath(const QString &path) const
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

bool EntrySelection::canSelectParent() const
{
    return selectedEntryPath_ && selectedEntryPath_->length() >= 2;
}

void EntrySelection::selectParent()
{
    if (canSelectParent())
        goToEntryPath(selectedEntryPath_->subpathOfLength(selectedEntryPath_->length() - 1), true,
                      true);
}

bool EntrySelection::canSelectChild() const
{
    return selectedEntry_ && !selectedEntry_->childrenInPlane(registryPlane_).empty();
}

void EntrySelection::selectChild()
{
    if (!selectedEntryPath_ || !canSelectChild()) {
        SystemBeep::beep();
        return;
    }
    TavRegistryEntryPath path = *selectedEntryPath_;
    path.appendRegistryEntry(
        selectedEntry_->childrenInPlane(registryPlane_).front()->shared_from_this());
    goToEntryPath(path, true, true);
}

void EntrySelection::selectNextSibling()
{
    selectSibling(1);
}

void EntrySelection::selectPreviousSibling()
{
    selectSibling(-1);
}

void EntrySelection::selectSibling(int step)
{
    if (views_.browserIsVisible())
        views_.selectSiblingInBrowser(step);
    else if (const Path sibling = views_.siblingInTree(step))
        goToEntryPath(sibling, true, true);
}

void EntrySelection::goBack()
{
    if (!history_.canGoBack()) {
        SystemBeep::beep();
        return;
    }
    goToVisited(history_.goBack());
}

void EntrySelection::goForward()
{
    if (!history_.canGoForward()) {
        SystemBeep::beep();
        return;
    }
    goToVisited(history_.goForward());
}

void EntrySelection::goToVisited(const TavRegistryEntryPath &path)
{
    const QScopedValueRollback revisiting(isRevisiting_, true);
    goToEntryPath(path, true, true);
    Q_EMIT historyChanged();
}

void EntrySelection::forgetWhatIsGone()
{
    history_.forgetWhatIsGone();
    Q_EMIT historyChanged();
}
