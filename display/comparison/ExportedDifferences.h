// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "compare/SnapshotComparison.h"
#include "display/comparison/ComparedRegistry.h"

// The differences that an export writes. Valid while the comparison is.
class ExportedDifferences
{
public:
    using Reach = SnapshotComparison::Reach;
    struct Filter
    {
        QSet<DifferenceKind> kinds;                          // empty: all
        std::function<bool(const EntryDifference &)> accept; // null: all
    };
    enum class Detail : quint8 {
        Counts,
        Differences,
        Whole, // with all properties of what was added or removed, and long values
    };

    ExportedDifferences(const SnapshotComparison &comparison, const QString &sourceBefore,
                        const QString &sourceAfter, Filter filter = {},
                        Detail detail = Detail::Differences);

    const SnapshotComparison &comparison() const { return comparison_; }
    const ComparedRegistry &before() const { return before_; }
    const ComparedRegistry &after() const { return after_; }
    Detail detail() const { return detail_; }
    bool isWhole() const { return detail_ == Detail::Whole; }
    const SnapshotComparison::Counts &counts() const
    {
        return counts_;
    } // of what passes the filter
    bool includes(const EntryDifference &difference) const;

    // The property changes to show.
    std::vector<PropertyDifferences::Change> changes(const PropertyDifferences &properties) const;

    // None where only the counts are wanted.
    template<class Action>
    void forEach(const Reach &reach, Action action) const
    {
        if (detail_ == Detail::Counts)
            return;
        constexpr std::size_t betweenReports = 64;
        const auto &differences = comparison_.differences();
        for (std::size_t i = 0; i < differences.size(); ++i) {
            if (i % betweenReports == 0)
                reach(static_cast<double>(i) / static_cast<double>(differences.size()));
            if (includes(differences[i]))
                action(differences[i]);
        }
    }

private:
    const SnapshotComparison &comparison_;
    ComparedRegistry before_;
    ComparedRegistry after_;
    Filter filter_;
    Detail detail_;
    SnapshotComparison::Counts counts_;
};
