// Running a search, and what it makes of the entries.
#include "explorer/find/FoundEntryPaths.h"
#include "explorer/find/TavFindTableViewDataSource.h"
#include "explorer/tree/TavRegistryOutlineView.h"
#include "explorer/window/TavWindowController.h"
#include "platform/host/SystemBeep.h"
#include "platform/runloop/LongWork.h"
#include "platform/widgets/ColumnBrowser.h"
#include "platform/widgets/SearchField.h"
#include "platform/widgets/Stepper.h"
#include "platform/widgets/ViewNote.h"
#include "store/TavDataStore.h"

namespace {
constexpr std::size_t takesLong = 50'000; // entries to search and to show
} // namespace

FindState TavWindowController::findStateForRegistryEntry(const TavRegistryEntry &entry) const
{
    if (!foundObjects_)
        return FindStateNone;
    auto *const key = const_cast<TavRegistryEntry *>(&entry);
    if (foundObjects_->contains(key))
        return FindStateMatching;
    const auto parents = parentsOfFoundObjectsInPlanes_.constFind(registryPlane_);
    return parents != parentsOfFoundObjectsInPlanes_.constEnd() && parents->contains(key)
               ? FindStateParentOfMatch
               : FindStateNotMatching;
}

void TavWindowController::beginFind()
{
    if (!findField_->isEnabled()) {
        SystemBeep::beep();
        return;
    }
    findField_->selectAll();
    findField_->setFocus(Qt::ShortcutFocusReason);
}

void TavWindowController::find()
{
    findField_->cancelPendingSearch();
    findWithString(findField_->text());
}

void TavWindowController::findWithString(const QString &text)
{
    const std::optional<TavRegistryEntryPath> selected = selectedEntryPath_;
    std::optional<LongWork> work; // until all is shown
    if (dataStore_->registryEntries().size() >= takesLong) {
        work.emplace(tr("Searching…"), LongWork::Kind::Moment);
        findObjectsMatching(text, *work);
    } else {
        findObjectsMatching(text);
    }
    registryOutlineView_->reloadData();
    registryBrowser_->reloadColumn(0);
    if (foundObjects_)
        findNext(true, true, false);
    else
        goToEntryPath(selected, true, true);
    validateActions(); // siblings are those in sight
}

void TavWindowController::findObjectsMatching(const QString &query)
{
    EntrySet found;
    QHash<QString, EntrySet> parents;
    if (isQuery(query))
        dataStore_->runQuery(query, findOptions_, &found, &parents);
    showFound(query, std::move(found), std::move(parents));
}

void TavWindowController::findObjectsMatching(const QString &query, LongWork &work)
{
    EntrySet found;
    QHash<QString, EntrySet> parents;
    work.run([&](WorkProgress &) {
        if (isQuery(query))
            dataStore_->runQuery(query, findOptions_, &found, &parents);
    });
    showFound(query, std::move(found), std::move(parents));
}

bool TavWindowController::isQuery(const QString &query) const
{
    return !query.isEmpty() && findOptions_;
}

// Takes a copy of the query, which may be the one that is kept.
void TavWindowController::showFound(QString query, EntrySet found, QHash<QString, EntrySet> parents)
{
    endSearch();
    if (isQuery(query)) {
        findQuery_ = std::move(query);
        foundObjects_ = std::move(found);
        parentsOfFoundObjectsInPlanes_ = std::move(parents);
        foundEntryPaths_ =
            std::make_unique<FoundEntryPaths>(*foundObjects_, dataStore_->registryPlanes());
        updateFindStepper();
    }
    findDataSource_->reloadData();
    nothingFoundNote_->setVisible(hidesEverything());
}

void TavWindowController::endSearch()
{
    findStepper_->setEnabled(false);
    foundObjects_.reset();
    parentsOfFoundObjectsInPlanes_.clear();
    foundEntryPaths_.reset();
    findQuery_ = QString();
}
