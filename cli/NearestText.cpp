// SPDX-License-Identifier: Apache-2.0
#include "cli/NearestText.h"

#include <numeric>

namespace {
constexpr qsizetype maxSize = 200; // of a text that is compared

// Letters to insert, delete, replace or swap with the next one. More than the limit counts as the
// limit plus one.
qsizetype differences(const QString &a, const QString &b, qsizetype limit)
{
    if (std::abs(a.size() - b.size()) > limit)
        return limit + 1;
    const auto size = static_cast<std::size_t>(b.size());
    std::vector<qsizetype> before(size + 1);
    std::vector<qsizetype> last(size + 1);
    std::vector<qsizetype> row(size + 1);
    std::iota(last.begin(), last.end(), 0);
    for (qsizetype i = 1; i <= a.size(); ++i) {
        row[0] = i;
        for (qsizetype j = 1; j <= b.size(); ++j) {
            const auto at = static_cast<std::size_t>(j);
            const bool isSame = a[i - 1] == b[j - 1];
            row[at] = std::min({row[at - 1] + 1, last[at] + 1, last[at - 1] + (isSame ? 0 : 1)});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1])
                row[at] = std::min(row[at], before[at - 2] + 1);
        }
        if (*std::min_element(row.begin(), row.end()) > limit)
            return limit + 1;
        std::swap(before, last);
        std::swap(last, row);
    }
    return std::min(last[size], limit + 1);
}
} // namespace

QString NearestText::among(const QStringList &candidates, const QString &text)
{
    if (text.isEmpty() || text.size() > maxSize)
        return {};
    const QString wanted = text.toCaseFolded();
    qsizetype limit = 1 + wanted.size() / 4;
    QString nearest;
    for (const QString &candidate : candidates) {
        if (candidate.isEmpty() || candidate.size() > maxSize)
            continue;
        const qsizetype count = differences(candidate.toCaseFolded(), wanted, limit);
        if (count > limit)
            continue;
        nearest = candidate;
        if (count == 0)
            break;
        limit = count - 1;
    }
    return nearest;
}
