// SPDX-License-Identifier: Apache-2.0
// The path operations of TavRegistryEntry.
#include "model/ChainsUp.h"
#include "model/RegistryOrder.h"

#include <limits>

namespace {
using ChainsUp::Chain;

template<class IsTop, class Action>
void forEachChainUp(const TavRegistryEntry &entry, const QString &plane, IsTop isTop, Action action)
{
    const auto mayClimb = [](const auto &, const auto &) { return true; };
    ChainsUp::forEach(entry, plane, ChainsUp::maxSteps, isTop, mayClimb, action);
}

// The number of chains up to the registry's root, counted without walking each of them.
quint64 countChainsUp(const TavRegistryEntry &entry, const QString &plane)
{
    constexpr quint64 max = std::numeric_limits<quint64>::max();
    // None: parents still to be counted.
    QHash<const TavRegistryEntry *, std::optional<quint64>> counts;
    std::vector<const TavRegistryEntry *> pending{&entry};
    while (!pending.empty()) {
        const TavRegistryEntry *const current = pending.back();
        const bool isRoot = current->isRegistryRoot();
        const bool isFirstVisit = !counts.contains(current);
        std::optional<quint64> &count = counts[current];
        if (!isRoot && isFirstVisit) {
            for (const TavRegistryEntry *parent : current->parentsInPlane(plane)) {
                if (!counts.contains(parent))
                    pending.push_back(parent);
            }
            continue;
        }
        pending.pop_back();
        if (count)
            continue;
        quint64 sum = isRoot ? 1 : 0;
        for (const TavRegistryEntry *parent : current->parentsInPlane(plane)) {
            if (!isRoot)
                sum += std::min(max - sum, counts.value(parent).value_or(0));
        }
        count = sum;
    }
    return counts.value(&entry).value_or(0);
}
} // namespace

QStringList TavRegistryEntry::registryPathsInPlane(const QString &plane) const
{
    QStringList paths;
    forEachChainUp(
        *this, plane, [](const TavRegistryEntry &entry) { return entry.isRegistryRoot(); },
        [&](const Chain &chain) {
            QString path = plane + u':';
            for (auto entry = chain.rbegin() + 1; entry != chain.rend(); ++entry)
                path += u'/' + (*entry)->nameAtLocationInPlane(plane);
            paths.append(path);
        });
    return paths;
}

QStringList TavRegistryEntry::planesWithParents() const
{
    QStringList planes;
    for (const auto &item : facts_.parentsInPlanes) {
        if (!item.value.entries().empty())
            planes.append(item.plane());
    }
    std::sort(planes.begin(), planes.end(), [](const QString &a, const QString &b) {
        return compareRegistryPlaneForUI(a, b) < 0;
    });
    return planes;
}

QStringList TavRegistryEntry::allRegistryPaths() const
{
    QStringList paths;
    for (const QString &plane : planesWithParents())
        paths += registryPathsInPlane(plane);
    return paths;
}

TavRegistryEntry::PathCounts TavRegistryEntry::getNumRegistryPaths() const
{
    PathCounts counts{0, 0};
    for (const QString &plane : planesWithParents()) {
        const quint64 paths = countChainsUp(*this, plane);
        counts.paths += std::min(std::numeric_limits<quint64>::max() - counts.paths, paths);
        counts.planes += paths > 0;
    }
    return counts;
}

std::vector<TavRegistryEntryPath> TavRegistryEntry::entryPathsInPlane(const QString &plane)
{
    std::vector<TavRegistryEntryPath> paths;
    forEachChainUp(
        *this, plane, [](const TavRegistryEntry &entry) { return entry.numParents() == 0; },
        [&](const Chain &chain) { paths.push_back(ChainsUp::pathDown(chain, plane)); });
    std::stable_sort(paths.begin(), paths.end(),
                     [](const auto &a, const auto &b) { return a.compareToEntryPath(b) < 0; });
    return paths;
}

std::optional<TavRegistryEntryPath> TavRegistryEntry::entryPathInPlane(const QString &plane,
                                                                       std::size_t index)
{
    const auto paths = entryPathsInPlane(plane);
    return index < paths.size() ? std::optional(paths[index]) : std::nullopt;
}

std::vector<TavRegistryEntryPath> TavRegistryEntry::allEntryPaths()
{
    std::vector<TavRegistryEntryPath> all;
    for (const QString &plane : planesWithParents()) {
        for (TavRegistryEntryPath &path : entryPathsInPlane(plane))
            all.push_back(std::move(path));
    }
    return all;
}

EntrySet TavRegistryEntry::entriesMatchingRelativeRegistryPath(const QString &path,
                                                               const QString &plane)
{
    EntrySet level{this};
    QStringView rest(path);
    // Deliberate: an empty remainder, as after a trailing "/", matches nothing.
    while (!rest.isEmpty() && !level.isEmpty()) {
        const qsizetype slash = rest.indexOf(u'/');
        // A leading "/" is an entry with that name.
        const QStringView component = slash < 0 ? rest : rest.first(std::max<qsizetype>(slash, 1));
        if (slash == 0 && rest.sliced(1).startsWith(u'/'))
            return {};
        level.removeIf([&](const TavRegistryEntry *entry) {
            return entry->nameAtLocationInPlane(plane) != component;
        });
        if (slash < 0)
            return level;
        EntrySet next;
        for (const TavRegistryEntry *entry : level) {
            for (TavRegistryEntry *child : entry->childrenInPlane(plane))
                next.insert(child);
        }
        level = std::move(next);
        rest = rest.sliced(slash + 1);
    }
    return {};
}
