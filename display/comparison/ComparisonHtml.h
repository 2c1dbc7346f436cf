// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "display/comparison/DifferenceRows.h"
#include "display/comparison/TextDifference.h"
#include "display/export/Utf8Output.h"

// Writes a comparison as one page that needs nothing else: no script and nothing from elsewhere.
// Any thread, while nobody changes the formats.
class ComparisonHtml
{
    Q_DECLARE_TR_FUNCTIONS(ComparisonHtml)
public:
    using Reach = ExportedDifferences::Reach;

    // False if the device failed.
    static bool write(const ExportedDifferences &differences, QIODevice &device,
                      const Reach &reach);

private:
    ComparisonHtml(const ExportedDifferences &differences, QIODevice &device);

    void addHead();
    void addRegistries();
    void addCounts();
    void addEntry(const EntryDifference &difference);
    void addEntryHead(const EntryDifference &difference);
    void addRows(const DifferenceRows &rows);
    void addRow(const DifferenceRows::Row &row);
    void addCell(const std::optional<QString> &text, const TextDifference &difference,
                 TextDifference::Side side);
    void addText(const QString &text); // escaped
    void addElement(QLatin1String tag, const QString &text);

    const ExportedDifferences &differences_;
    bool areOpen_; // the details of entries
    Utf8Output output_;
};
