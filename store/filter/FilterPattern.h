// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "store/filter/FilterError.h"

#include <QDeadlineTimer>
#include <QRegularExpression>
#include <atomic>
#include <optional>

// The time that regular expressions may take in one search. Shared by its threads.
class FilterBudget
{
public:
    bool isSpent() const { return deadline_.hasExpired(); }
    // Some text was not searched.
    void noteSkipped() { hasSkipped_ = true; }
    bool hasSkipped() const { return hasSkipped_; }

private:
    static constexpr int milliseconds = 2000;

    QDeadlineTimer deadline_{milliseconds};
    std::atomic<bool> hasSkipped_ = false;
};

// A regular expression that cannot hang: what takes too long counts as no match.
class FilterPattern
{
public:
    static constexpr qsizetype maxSize = 1000;

    // The error counts from the pattern's start.
    std::optional<FilterError> compile(const QString &pattern);
    bool matches(QStringView text, FilterBudget &budget) const;

private:
    QRegularExpression expression_;
};
