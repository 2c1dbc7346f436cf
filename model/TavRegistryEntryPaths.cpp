// The path operations of TavRegistryEntry.
#include "model/RegistryOrder.h"
#include "model/TavRegistryEntryPath.h"

#include <limits>

namespace {
using Chain = std::vector<const TavRegistryEntry *>; // from an entry up to a top

// Calls action for every chain of parents in the plane that ends at a top, in the order of the
// parents at each step.
template<class IsTop, class Action>
void forEachChainUp(const TavRegistryEntry &entry, const QString &plane, IsTop isTop, Action action)
{
    struct Step
    {
        const EntryList::Entries &parents;
        std::size_t next;
    };
    Chain chain{&entry};
    std::vector<Step> steps;
    const auto enter = [&] {
        const bool top = isTop(*chain.back());
        if (top)
            action(chain);
        static const EntryList::Entries none;
        steps.push_back({top ? none : chain.back()->parentsInPlane(plane), 0});
    };
    enter();
    while (!steps.empty()) {
        Step &step = steps.back();
        if (step.next < step.parents.size()) {
            chain.push_back(step.parents[step.next++]);
            enter();
        } else {
            steps.pop_back();
            chain.pop_back();
        }
    }
}

// The number of chains that forEachChainUp finds, without walking each of them.
quint64 countChainsUp(const TavRegistryEntry &entry, const QString &plane)
{
    QHash<const TavRegistryEntry *, quint64> counts;
    std::vector<const TavRegistryEntry *> pending{&entry};
    while (!pending.empty()) {
        const TavRegistryEntry *current = pending.back();
        if (counts.contains(current)) {
            pending.pop_back();
            continue;
        }
        quint64 sum = current->isRegistryRoot() ? 1 : 0;
        bool complete = true;
        for (const TavRegistryEntry *parent : current->parentsInPlane(plane)) {
            if (sum == 1 && current->isRegistryRoot())
                break;
            const auto known = counts.constFind(parent);
            if (known == counts.constEnd()) {
                pending.push_back(parent);
                complete = false;
            } else {
                const quint64 room = std::numeric_limits<quint64>::max() - sum;
                sum += std::min(room, *known);
            }
        }
        if (complete) {
            counts.insert(current, sum);
            pending.pop_back();
        }
    }
    return counts.value(&entry);
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
    for (const auto &[plane, parents] : parentsInPlanes_) {
        if (!parents.entries().empty())
            planes.append(plane);
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
        [&](const Chain &chain) {
            TavRegistryEntryPath path(plane);
            for (auto entry = chain.rbegin(); entry != chain.rend(); ++entry)
                path.appendRegistryEntry(
                    const_cast<TavRegistryEntry *>(*entry)->shared_from_this());
            paths.push_back(std::move(path));
        });
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
    QString rest = path;
    // An empty remainder, as after a trailing "/", matches nothing.
    while (!rest.isEmpty()) {
        QString component;
        QString remainder; // null: none
        const qsizetype slash = rest.indexOf(u'/');
        if (slash == 0) {
            component = QStringLiteral("/");
            remainder = rest.mid(1);
            if (remainder.startsWith(u'/'))
                return {};
        } else {
            component = rest.left(slash);
            if (slash > 0)
                remainder = QStringLiteral("") + rest.mid(slash + 1);
        }
        EntrySet matching;
        for (TavRegistryEntry *entry : level) {
            if (entry->nameAtLocationInPlane(plane) == component)
                matching.insert(entry);
        }
        if (slash < 0)
            return matching;
        level.clear();
        for (const TavRegistryEntry *entry : matching) {
            for (TavRegistryEntry *child : entry->childrenInPlane(plane))
                level.insert(child);
        }
        rest = remainder;
    }
    return {};
}
