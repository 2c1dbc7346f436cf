// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "store/filter/FilterExpression.h"
#include "store/filter/FilterNode.h"
#include "store/filter/FilterTokenizer.h"

#include <QCoreApplication>

struct FilterExpression::Content
{
    QString text;
    FilterNode root;
    std::vector<QStringList> properties;
    QStringList ancestors;
};

// Reads one filter expression by recursive descent: or, and, not, condition.
class FilterParser
{
    Q_DECLARE_TR_FUNCTIONS(FilterParser)
public:
    explicit FilterParser(const QString &text);

    Result<FilterExpression, FilterError> parse();

private:
    using Kind = FilterToken::Kind;
    using Relation = FilterTest::Relation;

    // Each reads what it is named after; false with the error set.
    bool readOr(FilterNode &node);
    bool readAnd(FilterNode &node);
    bool readNot(FilterNode &node);
    bool readCondition(FilterNode &node);
    bool readGroup(FilterNode &node);
    bool readExists(FilterTest &test);
    bool readUnder(FilterTest &test);
    bool readField(FilterField &field);
    bool readRelation(FilterTest &test);
    bool readIn(FilterTest &test);
    bool readText(QString &text);
    bool readValue(FilterTest &test);
    bool readOperand(FilterTest &test);
    bool readSearch(FilterTest &test);
    bool readProperty(FilterField &field);
    bool readKeys(FilterField &field, const QString &path);
    bool readClose(const FilterToken &open, const QString &message);
    bool setKeys(FilterField &field, const QString &path);

    void advance();
    bool isWord(QStringView word) const;
    bool isCall(QStringView word) const;
    bool isPropertyAhead() const;
    bool isValueAhead() const;
    FilterToken following() const; // the token after the current one
    bool fail(const QString &message, const FilterToken &token);
    bool failAfter(const QString &message);

    static constexpr int maxDepth = 100; // of parentheses and "not"

    QString text_;
    FilterTokenizer tokenizer_;
    FilterToken token_;    // not read yet
    FilterToken previous_; // the last one that was read
    int depth_ = 0;
    std::shared_ptr<FilterExpression::Content> content_;
    std::optional<FilterError> error_;
};
