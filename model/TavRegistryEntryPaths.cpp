// The path operations of TavRegistryEntry.
#include "model/RegistryOrder.h"
#include "model/TavRegistryEntryPath.h"

#include <limits>

namespace {
using Chain = std::vector<const TavRegistryEntry *>; // from an entry up to a top

// A few devices stacked on two others each have more chains than there is memory. No machine comes
// near this many steps of one entry's chains.
constexpr std::size_t mostSteps = 4'000'000;

// Calls action for every chain of parents in the plane that ends at a top, in the order of the
// parents at each step, as far as the most steps go. Entries re-read one by one can disagree about
// who is above whom, so a chain that comes back to itself is left.
template<class IsTop, class Action>
void forEachChainUp(const TavRegistryEntry &entry, const QString &plane, IsTop isTop, Action action)
{
    struct Step
    {
        const EntryList::Entries &parents;
        std::size_t next;
    };
    Chain chain{&entry};
    QSet<const TavRegistryEntry *> onChain{&entry};
    std::vector<Step> steps;
    std::size_t stepsTaken = 0;
    const auto enter = [&] {
        const bool top = isTop(*chain.back());
        stepsTaken += top ? chain.size() : 1;
        if (top)
            action(chain);
        static const EntryList::Entries none;
        steps.push_back({top ? none : chain.back()->parentsInPlane(plane), 0});
    };
    enter();
    while (!steps.empty() && stepsTaken < mostSteps) {
        Step &step = steps.back();
        if (step.next == step.parents.size()) {
            steps.pop_back();
            onChain.remove(chain.back());
            chain.pop_back();
            continue;
        }
        const TavRegistryEntry *const parent = step.parents[step.next++];
        if (onChain.contains(parent))
            continue;
        onChain.insert(parent);
        chain.push_back(parent);
        enter();
    }
}

// The number of chains that forEachChainUp finds up to the registry's root, without walking each
// of them.
quint64 countChainsUp(const TavRegistryEntry &entry, const QString &plane)
{
    constexpr quint64 most = std::numeric_limits<quint64>::max();
    QHash<const TavRegistryEntry *, std::optional<quint64>> counts; // none: not all parents counted
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
                sum += std::min(most - sum, counts.value(parent).value_or(0));
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
    for (const auto &item : parentsInPlanes_) {
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
    QStringView rest(path);
    // An empty remainder, as after a trailing "/", matches nothing.
    while (!rest.isEmpty() && !level.isEmpty()) {
        const qsizetype slash = rest.indexOf(u'/');
        // A leading "/" stands for an entry that is named so.
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
