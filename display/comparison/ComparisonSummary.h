// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "compare/SnapshotComparison.h"

#include <QCoreApplication>

// How much differs, in few words.
class ComparisonSummary
{
    Q_DECLARE_TR_FUNCTIONS(ComparisonSummary)
public:
    using Counts = SnapshotComparison::Counts;

    static quint64 count(const Counts &counts, DifferenceKind kind);
    static quint64 &count(Counts &counts, DifferenceKind kind);
    static QString part(DifferenceKind kind, quint64 count); // "12 added"
    // "12 added, 3 removed, 1 moved, 9 changed", or "No differences".
    static QString text(const Counts &counts);
};
