// SPDX-License-Identifier: Apache-2.0
#include "explorer/selection/PathsPopUp.h"

#include "explorer/ExplorerContext.h"
#include "model/EntryPathList.h"
#include "platform/widgets/VisibleText.h"
#include "store/TavDataStore.h"

#include <QComboBox>
#include <QStandardItemModel>
#include <algorithm>

PathsPopUp::PathsPopUp(QComboBox &button, const ExplorerContext &context)
    : entryPathsButton_(button)
    , context_(context)
{
    connect(&entryPathsButton_, &QComboBox::activated, this, &PathsPopUp::choose);
}

void PathsPopUp::populatePathsPopup(const EntryRef &entry, const Path &selected)
{
    entryPathsButton_.clear();
    entryPathsOfItems_.clear();
    if (entry) {
        for (const QString &plane : context_.dataStore()->registryPlanes())
            addPaths(*entry, plane, selected);
    }
    entryPathsButton_.setEnabled(entryPathsButton_.count() > 0);
    const auto item =
        selected ? std::find(entryPathsOfItems_.begin(), entryPathsOfItems_.end(), selected)
                 : entryPathsOfItems_.end();
    entryPathsButton_.setCurrentIndex(item == entryPathsOfItems_.end()
                                          ? -1
                                          : static_cast<int>(item - entryPathsOfItems_.begin()));
}

void PathsPopUp::addPaths(TavRegistryEntry &entry, const QString &plane, const Path &selected)
{
    EntryPathList list(entry, plane);
    if (!list.isWhole() && selected && selected->plane() == plane &&
        selected->lastRegistryEntry().get() == &entry)
        list.add(*selected);
    if (!list.paths().empty() && entryPathsButton_.count() > 0) {
        entryPathsButton_.insertSeparator(entryPathsButton_.count());
        entryPathsOfItems_.emplace_back();
    }
    for (const TavRegistryEntryPath &path : list.paths()) {
        entryPathsButton_.addItem(visibleCharacters(path.registryPath()));
        entryPathsOfItems_.emplace_back(path);
    }
    if (!list.isWhole())
        addNote(tr("There are more paths in %1 than are listed").arg(plane));
}

// An item that cannot be chosen, and that the steps pass over.
void PathsPopUp::addNote(const QString &text)
{
    entryPathsButton_.addItem(text);
    entryPathsOfItems_.emplace_back();
    auto *const model = qobject_cast<QStandardItemModel *>(entryPathsButton_.model());
    model->item(entryPathsButton_.count() - 1)->setEnabled(false);
}

void PathsPopUp::select(const TavRegistryEntryPath &path)
{
    const auto item = std::find(entryPathsOfItems_.begin(), entryPathsOfItems_.end(), path);
    if (item != entryPathsOfItems_.end())
        entryPathsButton_.setCurrentIndex(static_cast<int>(item - entryPathsOfItems_.begin()));
}

void PathsPopUp::choose(int item)
{
    goTo(pathOfItem(item, false));
}

void PathsPopUp::goTo(const Path &path)
{
    if (path)
        Q_EMIT pathChosen(*path);
}

bool PathsPopUp::canStep() const
{
    return entryPathsButton_.isEnabled() && entryPathsButton_.currentIndex() >= 0;
}

// None for a separator and where there is no item.
PathsPopUp::Path PathsPopUp::pathOfItem(int item, bool inSamePlane) const
{
    const auto index = static_cast<std::size_t>(item);
    if (item < 0 || index >= entryPathsOfItems_.size())
        return std::nullopt;
    const Path &path = entryPathsOfItems_[index];
    return path && inSamePlane && path->plane() != context_.registryPlane() ? std::nullopt : path;
}

PathsPopUp::Path PathsPopUp::nextEntryPath(bool inSamePlane) const
{
    if (!canStep())
        return std::nullopt;
    const int count = entryPathsButton_.count();
    int item = entryPathsButton_.currentIndex() + 1;
    if (item == count)
        item = 0;
    while (item < count && !pathOfItem(item, false))
        ++item;
    if (item == count) // past a note
        item = 0;
    return pathOfItem(item, inSamePlane);
}

// Deliberate: from the first item it steps to the one before the last, while the step forward wraps
// to the very first.
PathsPopUp::Path PathsPopUp::prevEntryPath(bool inSamePlane) const
{
    if (!canStep())
        return std::nullopt;
    const int current = entryPathsButton_.currentIndex();
    int item = current > 0 ? current - 1 : entryPathsButton_.count() - 2;
    while (item >= 0 && !pathOfItem(item, false))
        --item;
    return pathOfItem(item, inSamePlane);
}
