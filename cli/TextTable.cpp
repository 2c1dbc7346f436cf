// SPDX-License-Identifier: Apache-2.0
#include "cli/TextTable.h"

#include "display/export/EscapedText.h"

namespace {
constexpr qsizetype gap = 2;
} // namespace

void TextTable::write(CommandOutput &output) const
{
    const std::vector<qsizetype> widths = this->widths();
    for (const Row &row : rows_) {
        if (output.terminal().isTerminal) {
            writeRow(row, widths, output);
        } else {
            for (std::size_t i = 0; i < row.size(); ++i) {
                if (i > 0)
                    output.addTrusted(u"\t");
                output.add(row[i].text, row[i].role);
            }
        }
        output.endLine();
    }
}

std::vector<qsizetype> TextTable::widths() const
{
    std::vector<qsizetype> widths(rows_.empty() ? 0 : rows_.front().size());
    for (const Row &row : rows_) {
        for (std::size_t i = 0; i < row.size(); ++i)
            widths[i] = std::max(widths[i], escapedText(row[i].text).size());
    }
    return widths;
}

void TextTable::writeRow(const Row &row, const std::vector<qsizetype> &widths,
                         CommandOutput &output)
{
    qsizetype room = output.terminal().columns;
    for (std::size_t i = 0; i < row.size() && room > 0; ++i) {
        QString text = escapedText(row[i].text);
        const qsizetype padding =
            i + 1 < row.size() || row[i].isNumber ? widths[i] - text.size() : 0;
        if (row[i].isNumber)
            output.addSpaces(padding);
        if (text.size() > room)
            text = text.left(room - 1) + (output.terminal().isUtf8 ? u'…' : u'>');
        output.add(text, row[i].role);
        room -= widths[i] + gap;
        if (i + 1 < row.size() && room > 0)
            output.addSpaces(gap + (row[i].isNumber ? 0 : padding));
    }
}
