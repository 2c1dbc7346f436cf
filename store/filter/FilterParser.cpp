// SPDX-License-Identifier: Apache-2.0
#include "store/filter/FilterParser.h"

FilterParser::FilterParser(const QString &text)
    : text_(text)
    , tokenizer_(text_)
    , content_(std::make_shared<FilterExpression::Content>())
{
    content_->text = text_;
    token_ = tokenizer_.next();
}

Result<FilterExpression, FilterError> FilterParser::parse()
{
    if (text_.size() > FilterExpression::maxSize)
        return FilterError{
            tr("An expression has at most %1 characters").arg(FilterExpression::maxSize),
            FilterExpression::maxSize, text_.size() - FilterExpression::maxSize};
    if (readOr(content_->root) && token_.kind != Kind::End)
        fail(tr("“and” or “or” is missing before “%1”").arg(token_.text), token_);
    if (error_)
        return *error_;
    return FilterExpression(content_);
}

bool FilterParser::readOr(FilterNode &node)
{
    FilterNode first;
    if (!readAnd(first))
        return false;
    if (!isWord(u"or")) {
        node = std::move(first);
        return true;
    }
    node.kind = FilterNode::Kind::Or;
    node.parts.push_back(std::move(first));
    while (isWord(u"or")) {
        advance();
        if (!readAnd(node.parts.emplace_back()))
            return false;
    }
    return true;
}

bool FilterParser::readAnd(FilterNode &node)
{
    FilterNode first;
    if (!readNot(first))
        return false;
    if (!isWord(u"and")) {
        node = std::move(first);
        return true;
    }
    node.kind = FilterNode::Kind::And;
    node.parts.push_back(std::move(first));
    while (isWord(u"and")) {
        advance();
        if (!readNot(node.parts.emplace_back()))
            return false;
    }
    return true;
}

// All nesting comes by here, which is what bounds it.
bool FilterParser::readNot(FilterNode &node)
{
    if (depth_ == maxDepth)
        return fail(tr("Nested more than %1 levels deep").arg(maxDepth), token_);
    ++depth_;
    bool isRead = false;
    if (isWord(u"not")) {
        advance();
        node.kind = FilterNode::Kind::Not;
        isRead = readNot(node.parts.emplace_back());
    } else {
        isRead = token_.kind == Kind::Open ? readGroup(node) : readCondition(node);
    }
    --depth_;
    return isRead;
}

bool FilterParser::readGroup(FilterNode &node)
{
    const FilterToken open = token_;
    advance();
    if (!readOr(node))
        return false;
    return readClose(open, tr("“and”, “or” or “)” is missing before “%1”"));
}

bool FilterParser::readCondition(FilterNode &node)
{
    node.kind = FilterNode::Kind::Test;
    if (isCall(u"exists"))
        return readExists(node.test);
    if (isCall(u"under"))
        return readUnder(node.test);
    return readField(node.test.field) && readRelation(node.test);
}

// Of the parenthesis that was open.
bool FilterParser::readClose(const FilterToken &open, const QString &message)
{
    if (token_.kind == Kind::End)
        return fail(tr("The parenthesis is not closed"), open);
    if (token_.kind != Kind::Close)
        return fail(message.arg(token_.text), token_);
    advance();
    return true;
}

void FilterParser::advance()
{
    previous_ = std::exchange(token_, tokenizer_.next());
}

FilterToken FilterParser::following() const
{
    return FilterTokenizer(tokenizer_).next();
}

bool FilterParser::isWord(QStringView word) const
{
    return token_.kind == Kind::Word && token_.text == word;
}

bool FilterParser::isCall(QStringView word) const
{
    return isWord(word) && following().kind == Kind::Open;
}

bool FilterParser::isPropertyAhead() const
{
    return isCall(u"prop") || (token_.kind == Kind::Word && token_.text.startsWith(u'@'));
}

bool FilterParser::isValueAhead() const
{
    return token_.kind == Kind::Word || token_.kind == Kind::Quoted;
}

bool FilterParser::fail(const QString &message, const FilterToken &token)
{
    if (token.kind == Kind::Unclosed)
        error_ = FilterError{tr("The quote is not closed"), token.position, token.length};
    else
        error_ = FilterError{message, token.position, token.length};
    return false;
}

// What is missing has no place: the mark is on what it should follow.
bool FilterParser::failAfter(const QString &message)
{
    if (token_.kind == Kind::Unclosed)
        return fail(message, token_);
    if (previous_.length == 0)
        return fail(tr("The expression is empty"), token_);
    return fail(message.arg(previous_.text), previous_);
}
