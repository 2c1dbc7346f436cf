// The pop-up of the selected entry's paths, and the steps through it.
#include "explorer/window/TavWindowController.h"
#include "model/EntryPathList.h"
#include "platform/widgets/VisibleText.h"
#include "store/TavDataStore.h"

#include <QComboBox>
#include <QStandardItemModel>
#include <algorithm>

void TavWindowController::populatePathsPopup(const EntryRef &entry)
{
    entryPathsButton_->clear();
    entryPathsOfItems_.clear();
    int selected = -1;
    if (entry) {
        for (const QString &plane : dataStore_->registryPlanes()) {
            EntryPathList list(*entry, plane);
            if (!list.isWhole() && selectedEntryPath_ && selectedEntryPath_->plane() == plane &&
                selectedEntryPath_->lastRegistryEntry() == entry)
                list.add(*selectedEntryPath_);
            if (!list.paths().empty() && entryPathsButton_->count() > 0) {
                entryPathsButton_->insertSeparator(entryPathsButton_->count());
                entryPathsOfItems_.emplace_back();
            }
            for (const TavRegistryEntryPath &path : list.paths()) {
                if (selected < 0 && selectedEntryPath_ == path)
                    selected = entryPathsButton_->count();
                entryPathsButton_->addItem(visibleCharacters(path.registryPath()));
                entryPathsOfItems_.emplace_back(path);
            }
            if (!list.isWhole())
                addPathsNote(tr("There are more paths in %1 than are listed").arg(plane));
        }
    }
    entryPathsButton_->setEnabled(entryPathsButton_->count() > 0);
    entryPathsButton_->setCurrentIndex(selected);
}

// An item that cannot be chosen, and that the steps pass over.
void TavWindowController::addPathsNote(const QString &text)
{
    entryPathsButton_->addItem(text);
    entryPathsOfItems_.emplace_back();
    auto *const model = qobject_cast<QStandardItemModel *>(entryPathsButton_->model());
    model->item(entryPathsButton_->count() - 1)->setEnabled(false);
}

void TavWindowController::pathPopupChanged(int item)
{
    goToPath(entryPathOfItem(item, false));
}

void TavWindowController::selectInPathsPopup(const TavRegistryEntryPath &path)
{
    const auto item = std::find(entryPathsOfItems_.begin(), entryPathsOfItems_.end(), path);
    if (item != entryPathsOfItems_.end())
        entryPathsButton_->setCurrentIndex(static_cast<int>(item - entryPathsOfItems_.begin()));
}

bool TavWindowController::canStepThroughPaths() const
{
    return entryPathsButton_->isEnabled() && entryPathsButton_->currentIndex() >= 0;
}

// None for a separator and where there is no item.
std::optional<TavRegistryEntryPath> TavWindowController::entryPathOfItem(int item,
                                                                         bool inSamePlane) const
{
    const auto index = static_cast<std::size_t>(item);
    if (item < 0 || index >= entryPathsOfItems_.size())
        return std::nullopt;
    const auto &path = entryPathsOfItems_[index];
    return path && inSamePlane && path->plane() != registryPlane_ ? std::nullopt : path;
}

std::optional<TavRegistryEntryPath>
TavWindowController::nextEntryPathInPlane(bool inSamePlane) const
{
    if (!canStepThroughPaths())
        return std::nullopt;
    const int count = entryPathsButton_->count();
    int item = entryPathsButton_->currentIndex() + 1;
    if (item == count)
        item = 0;
    while (item < count && !entryPathOfItem(item, false))
        ++item;
    if (item == count) // past a note
        item = 0;
    return entryPathOfItem(item, inSamePlane);
}

// Deliberate: from the first item it steps to the one before the last, while the step forward wraps
// to the very first.
std::optional<TavRegistryEntryPath>
TavWindowController::prevEntryPathInPlane(bool inSamePlane) const
{
    if (!canStepThroughPaths())
        return std::nullopt;
    const int current = entryPathsButton_->currentIndex();
    int item = current > 0 ? current - 1 : entryPathsButton_->count() - 2;
    while (item >= 0 && !entryPathOfItem(item, false))
        --item;
    return entryPathOfItem(item, inSamePlane);
}

void TavWindowController::goToPath(const std::optional<TavRegistryEntryPath> &path)
{
    if (path)
        goToEntryPath(path, true, true);
}

void TavWindowController::goToNextPathInPlane()
{
    goToPath(nextEntryPathInPlane(true));
}

void TavWindowController::goToPrevPathInPlane()
{
    goToPath(prevEntryPathInPlane(true));
}

void TavWindowController::goToNextPathCrossPlane()
{
    goToPath(nextEntryPathInPlane(false));
}

void TavWindowController::goToPrevPathCrossPlane()
{
    goToPath(prevEntryPathInPlane(false));
}
