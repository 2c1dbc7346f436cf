// SPDX-License-Identifier: Apache-2.0
#include "display/comparison/ComparisonSummary.h"

#include "display/comparison/DifferenceWords.h"

quint64 &ComparisonSummary::count(Counts &counts, DifferenceKind kind)
{
    switch (kind) {
    case DifferenceKind::Added:
        return counts.added;
    case DifferenceKind::Removed:
        return counts.removed;
    case DifferenceKind::Moved:
        return counts.moved;
    case DifferenceKind::Renamed:
        return counts.renamed;
    case DifferenceKind::Changed:
        return counts.changed;
    case DifferenceKind::Same:
        break;
    }
    return counts.same;
}

quint64 ComparisonSummary::count(const Counts &counts, DifferenceKind kind)
{
    Counts copy = counts;
    return count(copy, kind);
}

QString ComparisonSummary::part(DifferenceKind kind, quint64 count)
{
    //: A number, and what happened to so many entries: "12 added"
    return tr("%1 %2").arg(QString::number(count), DifferenceWords::word(kind));
}

QString ComparisonSummary::text(const Counts &counts)
{
    QStringList parts;
    for (const DifferenceKind kind : DifferenceWords::kinds()) {
        if (const quint64 number = count(counts, kind))
            parts.append(part(kind, number));
    }
    return parts.isEmpty() ? tr("No differences") : parts.join(QLatin1String(", "));
}
