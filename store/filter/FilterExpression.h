// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/Result.h"
#include "store/filter/FilterError.h"

#include <QStringList>
#include <memory>
#include <vector>

struct FilterNode;

// A condition on entries, such as `vendor == 0x8086 and not driver`; docs/filter-expressions.md
// describes the language. Immutable and implicitly shared.
class FilterExpression
{
public:
    static constexpr qsizetype maxSize = 8192; // characters

    static Result<FilterExpression, FilterError> parse(const QString &text);

    const QString &text() const;
    const FilterNode &root() const;
    // What it refers to, by the numbers in its nodes: the keys of each property, and the names that
    // entries above must have.
    const std::vector<QStringList> &properties() const;
    const QStringList &ancestors() const;

private:
    friend class FilterParser;
    struct Content;

    explicit FilterExpression(std::shared_ptr<const Content> content);

    std::shared_ptr<const Content> content_;
};
