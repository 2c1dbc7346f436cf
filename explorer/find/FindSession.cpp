// SPDX-License-Identifier: Apache-2.0
#include "explorer/find/FindSession.h"

#include "display/ShownValueSearch.h"
#include "store/TavDataStore.h"

FindSession::FindSession(std::shared_ptr<TavDataStore> dataStore)
    : dataStore_(std::move(dataStore))
{}

bool FindSession::isQuery(const QString &query) const
{
    return !query.isEmpty() && findOptions_;
}

ShownValueTest FindSession::shownValues(const QString &query) const
{
    return findOptions_.testFlag(FindOption::ShownValues) ? ShownValueSearch(query)
                                                          : ShownValueTest();
}

FindSession::Result FindSession::run(const QString &query, const ShownValueTest &shownValues) const
{
    Result result;
    if (isQuery(query))
        dataStore_->runQuery(query, findOptions_, &result.found, &result.parentsInPlanes,
                             shownValues);
    return result;
}

// Takes a copy of the query, which may be the current one.
void FindSession::begin(QString query, Result result)
{
    end();
    if (!isQuery(query))
        return;
    findQuery_ = std::move(query);
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
    findQuery_ = QString();
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
