// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "display/comparison/DifferenceRows.h"
#include "display/comparison/TextDifference.h"

class QIODevice;

// Writes a comparison for people to read, entry by entry like a unified diff. Any thread, while
// nobody changes the formats.
class ComparisonText
{
    Q_DECLARE_TR_FUNCTIONS(ComparisonText)
public:
    enum class Role : quint8 { Plain, Detail, Added, Removed, Changed };
    struct Part
    {
        QString text; // not escaped
        Role role;
    };
    using Line = std::vector<Part>;
    using LineAction = std::function<void(const Line &)>;
    using Reach = ExportedDifferences::Reach;

    // False if the device failed.
    static bool write(const ExportedDifferences &differences, QIODevice &device,
                      const Reach &reach);
    // The same lines, for who colours them.
    static void forEachLine(const ExportedDifferences &differences, const Reach &reach,
                            const LineAction &action);

private:
    ComparisonText(const ExportedDifferences &differences, const LineAction &action)
        : differences_(differences)
        , action_(action)
    {}

    void addHead();
    void addEntry(const EntryDifference &difference);
    void addRow(const DifferenceRows::Row &row);
    void addSide(TextDifference::Side side, const DifferenceRows::Row &row, const QString &text);
    QString valueText(const TextDifference &difference, TextDifference::Side side) const;

    const ExportedDifferences &differences_;
    const LineAction &action_;
};
