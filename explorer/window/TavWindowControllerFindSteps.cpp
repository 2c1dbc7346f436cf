// Stepping from match to match.
#include "explorer/find/FoundEntryPaths.h"
#include "explorer/window/TavWindowController.h"
#include "platform/host/SystemBeep.h"
#include "platform/widgets/Stepper.h"

namespace {
constexpr int stepForward = 1; // the stepper's value, and the one it goes back to
} // namespace

void TavWindowController::updateFindStepper()
{
    findStepper_->setEnabled(nextFindPathInPlane(true, false).has_value());
}

// With the planes to wrap through, any match is a next and a previous one.
bool TavWindowController::canFindInAnyPlane() const
{
    return foundEntryPaths_ && !foundEntryPaths_->isEmpty();
}

// Without a selection, what comes before everything in the plane.
TavRegistryEntryPath TavWindowController::findStartingPath() const
{
    return selectedEntryPath_.value_or(TavRegistryEntryPath(registryPlane_));
}

// In the plane, it goes on at the first match after the last.
std::optional<TavRegistryEntryPath> TavWindowController::nextFindPathInPlane(bool samePlane,
                                                                             bool mustAdvance) const
{
    if (!foundEntryPaths_)
        return std::nullopt;
    const TavRegistryEntryPath start = findStartingPath();
    const auto next = foundEntryPaths_->firstAfter(start, !mustAdvance);
    if (!samePlane)
        return next ? next : foundEntryPaths_->first();
    return next && next->plane() == registryPlane_ ? next
                                                   : foundEntryPaths_->firstInPlane(start.plane());
}

// Deliberate: in the plane, it goes on at the last match only before the first of all matches, and
// only where matches of another plane follow.
std::optional<TavRegistryEntryPath> TavWindowController::prevFindPathInPlane(bool samePlane,
                                                                             bool mustAdvance) const
{
    if (!foundEntryPaths_)
        return std::nullopt;
    const TavRegistryEntryPath start = findStartingPath();
    auto previous = foundEntryPaths_->lastBefore(start, !mustAdvance);
    if (previous)
        return !samePlane || previous->plane() == registryPlane_ ? previous : std::nullopt;
    if (!samePlane)
        return foundEntryPaths_->last();
    return foundEntryPaths_->hasPathsAfterPlane(start.plane())
               ? foundEntryPaths_->lastInPlane(start.plane())
               : std::nullopt;
}

void TavWindowController::findNext(bool forward, bool inPlane, bool mustAdvance)
{
    const auto path = forward ? nextFindPathInPlane(inPlane, mustAdvance)
                              : prevFindPathInPlane(inPlane, mustAdvance);
    if (path)
        goToEntryPath(path, true, true);
    else
        SystemBeep::beep();
}

void TavWindowController::findNext()
{
    findNext(true, true, true);
}

void TavWindowController::findPrev()
{
    findNext(false, true, true);
}

void TavWindowController::findNextInAnyPlane()
{
    findNext(true, false, true);
}

void TavWindowController::findPrevInAnyPlane()
{
    findNext(false, false, true);
}

void TavWindowController::findStep()
{
    if (findStepper_->integerValue() == stepForward)
        findNext();
    else
        findPrev();
    findStepper_->setIntegerValue(stepForward);
}
