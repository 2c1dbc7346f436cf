// SPDX-License-Identifier: Apache-2.0
#include "store/filter/FilterPattern.h"

#include <QCoreApplication>

namespace {
// Steps of a match from one place of a text. An author's own limit can only be lower.
const QString limits = QStringLiteral("(*LIMIT_MATCH=100000)(*LIMIT_HEAP=1000)");

constexpr qsizetype searchedSize = 4096; // of a text: bounds the places
} // namespace

std::optional<FilterError> FilterPattern::compile(const QString &pattern)
{
    if (pattern.size() > maxSize)
        return FilterError{QCoreApplication::translate(
                               "FilterPattern", "A regular expression has at most %1 characters")
                               .arg(maxSize),
                           maxSize, pattern.size() - maxSize};
    expression_.setPattern(limits + pattern);
    if (expression_.isValid()) {
        expression_.optimize();
        return std::nullopt;
    }
    const qsizetype offset = expression_.patternErrorOffset() - limits.size();
    const qsizetype place =
        std::clamp<qsizetype>(offset - 1, 0, std::max<qsizetype>(0, pattern.size() - 1));
    return FilterError{
        QCoreApplication::translate("FilterPattern", "The regular expression is wrong: %1")
            .arg(expression_.errorString()),
        place, 1};
}

bool FilterPattern::matches(QStringView text, FilterBudget &budget) const
{
    if (budget.isSpent()) {
        budget.noteSkipped();
        return false;
    }
    const auto match = expression_.match(text.first(std::min(text.size(), searchedSize)));
    if (!match.isValid())
        budget.noteSkipped();
    return match.hasMatch();
}
