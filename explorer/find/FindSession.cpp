// SPDX-License-Identifier: Apache-2.0
#include "explorer/find/FindSession.h"

#include "display/ShownValueSearch.h"
#include "store/TavDataStore.h"

FindSession::FindSession(std::shared_ptr<TavDataStore> dataStore)
    : dataStore_(std::move(dataStore))
{}

// The options say where a text is searched; an expression says it itself.
bool FindSession::isQuery(const FindQuery &query) const
{
    return !query.text.isEmpty() && (query.filter || findOptions_);
}

ShownValueTest FindSession::shownValues(const FindQuery &query) const
{
    return !query.filter && findOptions_.testFlag(FindOption::ShownValues)
               ? ShownValueSearch(query.text)
               : ShownValueTest();
}

FindSession::Result FindSession::run(const FindQuery &query,
                                     const ShownValueTest &shownValues) const
{
    Result result;
    if (!isQuery(query))
        return result;
    if (query.filter)
        result.isComplete =
            dataStore_->runFilter(*query.filter, &result.found, &result.parentsInPlanes);
    else
        dataStore_->runQuery(query.text, findOptions_, &result.found, &result.parentsInPlanes,
                             shownValues);
    return result;
}

// Takes a copy of the query, which may be the current one.
void FindSession::begin(FindQuery query, Result result)
{
    end();
    if (!isQuery(query))
        return;
    query_ = std::move(query);
    foundObjects_ = std::move(result.found);
    parentsOfFoundObjectsInPlanes_ = std::move(result.parentsInPlanes);
    foundEntryPaths_ =
        std::make_unique<FoundEntryPaths>(*foundObjects_, dataStore_->registryPlanes());
}

void FindSession::end()
{
    foundObjects_.reset();
    parentsOfFoundObjectsInPlanes_.clear();
    foundEntryPaths_.reset();
    query_ = {};
}

FindState FindSession::findState(const TavRegistryEntry &entry, const QString &plane) const
{
    if (!foundObjects_)
        return FindStateNone;
    auto *const key = const_cast<TavRegistryEntry *>(&entry);
    if (foundObjects_->contains(key))
        return FindStateMatching;
    const auto parents = parentsOfFoundObjectsInPlanes_.constFind(plane);
    return parents != parentsOfFoundObjectsInPlanes_.constEnd() && parents->contains(key)
               ? FindStateParentOfMatch
               : FindStateNotMatching;
}

// In the plane, it goes on at the first match after the last.
FindSession::Path FindSession::nextPath(const TavRegistryEntryPath &start,
                                        const std::optional<QString> &plane, bool mustAdvance) const
{
    if (!foundEntryPaths_)
        return std::nullopt;
    const Path next = foundEntryPaths_->firstAfter(start, !mustAdvance);
    if (!plane)
        return next ? next : foundEntryPaths_->first();
    return next && next->plane() == *plane ? next : foundEntryPaths_->firstInPlane(start.plane());
}

// Deliberate: in the plane, it goes on at the last match only before the first of all matches, and
// only where matches of another plane follow.
FindSession::Path FindSession::prevPath(const TavRegistryEntryPath &start,
                                        const std::optional<QString> &plane, bool mustAdvance) const
{
    if (!foundEntryPaths_)
        return std::nullopt;
    const Path previous = foundEntryPaths_->lastBefore(start, !mustAdvance);
    if (previous)
        return !plane || previous->plane() == *plane ? previous : std::nullopt;
    if (!plane)
        return foundEntryPaths_->last();
    return foundEntryPaths_->hasPathsAfterPlane(start.plane())
               ? foundEntryPaths_->lastInPlane(start.plane())
               : std::nullopt;
}
