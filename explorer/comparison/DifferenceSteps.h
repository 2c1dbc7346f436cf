// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "compare/ComparisonStore.h"
#include "model/TavRegistryEntryPath.h"

#include <optional>

// The steps from one difference to the next, in the order of a plane.
class DifferenceSteps
{
public:
    using Path = std::optional<TavRegistryEntryPath>;

    explicit DifferenceSteps(const ComparisonStore &comparison)
        : comparison_(comparison)
    {}

    // A path to the difference that follows (or precedes) an entry; null entry: the first (last).
    // None at the end.
    Path next(const TavRegistryEntry *from, const QString &plane) const;
    Path previous(const TavRegistryEntry *from, const QString &plane) const;

private:
    std::vector<TavRegistryEntry *> inOrder(const QString &plane) const;
    Path step(const TavRegistryEntry *from, const QString &plane, bool isForward) const;

    const ComparisonStore &comparison_;
};
