// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "display/export/EntryFactTexts.h"
#include "display/export/ExportedEntries.h"
#include "display/export/Utf8Output.h"

class TavPropertyOutlineItem;

// Writes a table with a row for each entry. A spreadsheet takes no cell of it for a formula.
// Any thread, while nobody changes the formats.
class CsvExport
{
public:
    struct Columns
    {
        std::vector<EntryFactTexts::Fact> facts;
        QStringList keys; // of properties, such as "vendor" or "power/runtime_status"
    };

    // False if the device failed.
    static bool write(const ExportedEntries &entries, const Columns &columns, QIODevice &device,
                      const ExportedEntries::Reach &reach);

    // The keys that the entries have, in alphabetical order.
    static QStringList keysOf(const ExportedEntries &entries, const ExportedEntries::Reach &reach);

private:
    CsvExport(const ExportedEntries &entries, const Columns &columns, QIODevice &device);

    void addHead();
    void addRow(const TavRegistryEntry &entry);
    QStringList cells(const TavRegistryProperty &root) const; // by column of the keys
    static QString cell(TavPropertyOutlineItem &node);
    void addCell(const QString &text);

    const ExportedEntries &entries_;
    const Columns &columns_;
    QHash<QString, qsizetype> columnsOfKeys_;
    Utf8Output output_;
    bool isAtStart_ = true; // of a row
};
