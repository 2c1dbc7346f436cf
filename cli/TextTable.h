// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "cli/CommandOutput.h"

// Rows with aligned columns. On a terminal, long texts are shortened to its width; elsewhere
// columns are separated by a tab, for other programs.
class TextTable
{
public:
    struct Cell
    {
        QString text;
        TextRole role = TextRole::Plain;
        bool isNumber = false; // aligned to the right
    };
    using Row = std::vector<Cell>; // all of the same size

    void add(Row row) { rows_.push_back(std::move(row)); }
    void write(CommandOutput &output) const;

private:
    std::vector<qsizetype> widths() const;
    static void fit(std::vector<qsizetype> &widths, qsizetype room);
    static void writeRow(const Row &row, const std::vector<qsizetype> &widths,
                         CommandOutput &output);

    std::vector<Row> rows_;
};
