// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArrayList>
#include <vector>

// The lines of an outline with their depths: one leading space per level. No line is more than one
// level deeper than the previous one.
struct FuzzedLine
{
    std::size_t depth;
    QByteArray text;
};

inline std::vector<FuzzedLine> fuzzedLines(const QByteArray &outline)
{
    std::vector<FuzzedLine> lines;
    std::size_t deepest = 0;
    for (const QByteArray &line : outline.split('\n')) {
        std::size_t depth = 0;
        while (depth < deepest && line.mid(static_cast<qsizetype>(depth)).startsWith(' '))
            ++depth;
        const QByteArray text = line.mid(static_cast<qsizetype>(depth));
        if (text.isEmpty())
            continue;
        lines.push_back({depth, text});
        deepest = depth + 1;
    }
    return lines;
}
