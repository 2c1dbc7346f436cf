// SPDX-License-Identifier: Apache-2.0
#include "model/EntryPathList.h"

#include "model/ChainsUp.h"

#include <algorithm>

namespace {
constexpr std::size_t stepsListed = 100'000;

bool isTop(const TavRegistryEntry &entry)
{
    return entry.numParents() == 0;
}

bool isBefore(const TavRegistryEntryPath &a, const TavRegistryEntryPath &b)
{
    return a.compareToEntryPath(b) < 0;
}

// Matches a path text from its end while a chain climbs.
class WrittenPath
{
public:
    WrittenPath(const QString &path, const QString &plane)
        : path_(path)
        , plane_(plane)
        , isHost_(path.size() == plane.size() + 2) // "Plane:/"
    {}

    bool mayClimb(const ChainsUp::Chain &chain, const TavRegistryEntry &parent)
    {
        ends_.resize(chain.size());
        if (chain.size() == 1)
            ends_.front() = isHost_ ? plane_.size() + 1 : endBefore(*chain.front(), path_.size());
        ends_.push_back(endBefore(parent, ends_.back()));
        return ends_.back() >= 0;
    }

private:
    // Where the path ends after removing the entry's name; -1: no match. The host and the root have
    // no name in the text.
    qsizetype endBefore(const TavRegistryEntry &entry, qsizetype end) const
    {
        if (end <= plane_.size() + 1)
            return end;
        const QString name = u'/' + entry.nameAtLocationInPlane(plane_);
        return QStringView(path_).first(end).endsWith(name) ? end - name.size() : -1;
    }

    const QString &path_;
    const QString &plane_;
    bool isHost_;
    std::vector<qsizetype> ends_; // by entry of the chain
};
} // namespace

EntryPathList::EntryPathList(TavRegistryEntry &entry, const QString &plane)
{
    const auto mayClimb = [](const auto &, const auto &) { return true; };
    isWhole_ =
        ChainsUp::forEach(entry, plane, stepsListed, isTop, mayClimb, [&](const auto &chain) {
            paths_.push_back(ChainsUp::pathDown(chain, plane));
        });
    std::stable_sort(paths_.begin(), paths_.end(), isBefore);
}

void EntryPathList::add(const TavRegistryEntryPath &path)
{
    if (std::find(paths_.begin(), paths_.end(), path) == paths_.end())
        paths_.insert(std::lower_bound(paths_.begin(), paths_.end(), path, isBefore), path);
}

std::vector<TavRegistryEntryPath> EntryPathList::writtenAs(TavRegistryEntry &entry,
                                                           const QString &registryPath)
{
    const qsizetype colon = registryPath.indexOf(u':');
    if (colon < 0)
        return {};
    const QString plane = registryPath.left(colon);
    WrittenPath written(registryPath, plane);
    std::vector<TavRegistryEntryPath> paths;
    ChainsUp::forEach(
        entry, plane, stepsListed, isTop,
        [&](const auto &chain, const auto &parent) { return written.mayClimb(chain, parent); },
        [&](const auto &chain) {
            if (auto path = ChainsUp::pathDown(chain, plane); path.registryPath() == registryPath)
                paths.push_back(std::move(path));
        });
    return paths;
}
