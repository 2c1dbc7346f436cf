// SPDX-License-Identifier: Apache-2.0
#include "display/comparison/ExportedDifferences.h"

#include "display/comparison/ComparisonSummary.h"

ExportedDifferences::ExportedDifferences(const SnapshotComparison &comparison,
                                         const QString &sourceBefore, const QString &sourceAfter,
                                         Filter filter, Detail detail)
    : comparison_(comparison)
    , before_(comparison.before(), sourceBefore)
    , after_(comparison.after(), sourceAfter)
    , filter_(std::move(filter))
    , detail_(detail)
{
    counts_.same = comparison.counts().same;
    for (const EntryDifference &difference : comparison.differences()) {
        if (includes(difference))
            ++ComparisonSummary::count(counts_, difference.kind);
    }
}

bool ExportedDifferences::includes(const EntryDifference &difference) const
{
    return difference.kind != DifferenceKind::Same &&
           (filter_.kinds.isEmpty() || filter_.kinds.contains(difference.kind)) &&
           (!filter_.accept || filter_.accept(difference));
}

std::vector<PropertyDifferences::Change>
ExportedDifferences::changes(const PropertyDifferences &properties) const
{
    std::vector<PropertyDifferences::Change> changes = properties.changes();
    const bool showsVolatile = comparison_.options().showsVolatile;
    std::erase_if(changes, [showsVolatile](const auto &change) {
        return change.isIgnored || (change.isVolatile && !showsVolatile);
    });
    return changes;
}
