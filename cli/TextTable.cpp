// SPDX-License-Identifier: Apache-2.0
#include "cli/TextTable.h"

#include "display/export/EscapedText.h"

#include <numeric>

namespace {
constexpr qsizetype gap = 2;
constexpr qsizetype leastWidth = 8; // of a column that is cut
// Without the middle, which says least of a path.
QString shortened(const QString &text, qsizetype width, bool isUtf8)
{
    if (text.size() <= width)
        return text;
    const QString mark = isUtf8 ? QStringLiteral("…") : QStringLiteral("...");
    const qsizetype left = std::max<qsizetype>(0, width - mark.size()) / 2;
    const qsizetype right = std::max<qsizetype>(0, width - mark.size() - left);
    return (text.left(left) + mark + text.right(right)).left(width);
}
} // namespace

void TextTable::write(CommandOutput &output) const
{
    std::vector<qsizetype> widths = this->widths();
    if (output.terminal().isTerminal && !widths.empty())
        fit(widths, output.terminal().columns);
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

// The widest columns get narrower until all fit, unless there are too many.
void TextTable::fit(std::vector<qsizetype> &widths, qsizetype room)
{
    const auto count = static_cast<qsizetype>(widths.size());
    const qsizetype all = std::accumulate(widths.begin(), widths.end(), gap * (count - 1));
    for (qsizetype excess = all - room; excess > 0;) {
        const auto widest = std::max_element(widths.begin(), widths.end());
        const qsizetype least = std::max(leastWidth, *widest / 2);
        if (*widest <= leastWidth)
            return;
        const qsizetype cut = std::min(excess, *widest - least);
        *widest -= cut;
        excess -= cut;
    }
}

void TextTable::writeRow(const Row &row, const std::vector<qsizetype> &widths,
                         CommandOutput &output)
{
    for (std::size_t i = 0; i < row.size(); ++i) {
        const QString text =
            shortened(escapedText(row[i].text), widths[i], output.terminal().isUtf8);
        const bool isLast = i + 1 == row.size();
        const qsizetype padding = widths[i] - text.size();
        if (row[i].isNumber)
            output.addSpaces(padding);
        output.add(text, row[i].role);
        if (!isLast)
            output.addSpaces(gap + (row[i].isNumber ? 0 : padding));
    }
}
