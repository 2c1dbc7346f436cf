// SPDX-License-Identifier: Apache-2.0
#include "explorer/find/FindController.h"

#include "explorer/find/FilterMode.h"
#include "explorer/find/TavFindTableViewDataSource.h"
#include "explorer/selection/EntrySelection.h"
#include "explorer/views/ExplorerViews.h"
#include "platform/host/SystemBeep.h"
#include "platform/runloop/LongWork.h"
#include "platform/widgets/SearchField.h"
#include "platform/widgets/Stepper.h"
#include "platform/widgets/ViewNote.h"
#include "store/TavDataStore.h"

#include <QCheckBox>
#include <QPushButton>

namespace {
constexpr std::size_t takesLong = 50'000; // entries to search and to show
constexpr int stepForward = 1;            // the stepper's value, and the one it goes back to

std::optional<QString> planeOfSteps(const EntrySelection &selection, bool samePlane)
{
    return samePlane ? std::optional(selection.registryPlane()) : std::nullopt;
}
} // namespace

bool FindController::filterFindResults() const
{
    return filteredFindCheckbox_->isChecked();
}

bool FindController::hidesEverything() const
{
    const auto &found = session_.foundObjects();
    return filterFindResults() && found && found->isEmpty();
}

QWidget *FindController::field() const
{
    return findField_;
}

QWidget *FindController::offerToFindMore() const
{
    return nothingFoundNote_->button();
}

void FindController::beginFind()
{
    if (!findField_->isEnabled()) {
        SystemBeep::beep();
        return;
    }
    findField_->selectAll();
    findField_->setFocus(Qt::ShortcutFocusReason);
}

void FindController::find()
{
    findField_->cancelPendingSearch();
    if (const auto query = filterMode_->query())
        findFor(*query);
    else
        Q_EMIT shownEntriesChanged(); // of the commands, one saves what is right
}

void FindController::cancelSearch()
{
    findField_->cancelSearch();
}

void FindController::findWithString(const QString &text)
{
    findFor({text});
}

void FindController::findFor(const FindQuery &query)
{
    const EntrySelection::Path selected = selection_.entryPath();
    std::optional<LongWork> work; // until all is shown
    if (dataStore_->registryEntries().size() >= takesLong) {
        work.emplace(tr("Searching…"), LongWork::Kind::Moment);
        FindSession::Result result;
        const ShownValueTest shownValues = session_.shownValues(query);
        work->run([&](WorkProgress &) { result = session_.run(query, shownValues); });
        show(query, std::move(result));
    } else {
        findObjectsMatching(query);
    }
    views_.reload();
    if (session_.foundObjects())
        findNext(true, true, false);
    else
        selection_.goToEntryPath(selected, true, true);
    Q_EMIT shownEntriesChanged();
}

void FindController::findAgain()
{
    if (!session_.findQuery().isNull())
        findObjectsMatching(session_.query());
}

void FindController::findObjectsMatching(const FindQuery &query)
{
    show(query, session_.run(query, session_.shownValues(query)));
}

void FindController::show(const FindQuery &query, FindSession::Result result)
{
    if (!result.isComplete)
        filterMode_->explainTakesLong();
    session_.begin(query, std::move(result));
    updateStepper();
    results_->reloadData();
    showWhetherAnythingMatches();
}

void FindController::showWhetherAnythingMatches()
{
    const auto &found = session_.foundObjects();
    const bool offersMore = found && found->isEmpty() && !session_.query().filter &&
                            (session_.options() & searchInProperties) != searchInProperties;
    nothingFoundNote_->offerButton(offersMore);
    nothingFoundNote_->setVisible(hidesEverything());
    searchPropertiesButton_->setVisible(offersMore);
}

void FindController::redisplay()
{
    results_->redisplay();
}

void FindController::updateStepper()
{
    findStepper_->setEnabled(nextFindPathInPlane(true, false).has_value());
}

// Without a selection, what comes before everything in the plane.
TavRegistryEntryPath FindController::startingPath() const
{
    return selection_.entryPath().value_or(TavRegistryEntryPath(selection_.registryPlane()));
}

FindSession::Path FindController::nextFindPathInPlane(bool samePlane, bool mustAdvance) const
{
    return session_.nextPath(startingPath(), planeOfSteps(selection_, samePlane), mustAdvance);
}

FindSession::Path FindController::prevFindPathInPlane(bool samePlane, bool mustAdvance) const
{
    return session_.prevPath(startingPath(), planeOfSteps(selection_, samePlane), mustAdvance);
}

void FindController::findNext(bool forward, bool inPlane, bool mustAdvance)
{
    const auto path = forward ? nextFindPathInPlane(inPlane, mustAdvance)
                              : prevFindPathInPlane(inPlane, mustAdvance);
    if (path)
        selection_.goToEntryPath(path, true, true);
    else
        SystemBeep::beep();
}

void FindController::findStep()
{
    if (findStepper_->integerValue() == stepForward)
        findNextInPlane();
    else
        findPrevInPlane();
    findStepper_->setIntegerValue(stepForward);
}

void FindController::filteredFindChanged()
{
    const EntrySelection::Path selected = selection_.entryPath();
    views_.reload();
    results_->reloadData();
    showWhetherAnythingMatches();
    selection_.goToEntryPath(selected, true, true);
    Q_EMIT shownEntriesChanged();
}
