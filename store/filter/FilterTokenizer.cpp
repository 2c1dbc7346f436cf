// SPDX-License-Identifier: Apache-2.0
#include "store/filter/FilterTokenizer.h"

#include <algorithm>

namespace {
using TokenKind = FilterToken::Kind;

constexpr QStringView signs = u"(),\"'=!<>~";

// The longer ones first.
constexpr QStringView operators[] = {u"==", u"!=", u"<=", u">=", u"=~",
                                     u"=",  u"<",  u">",  u"~",  u"!"};
} // namespace

bool FilterTokenizer::isWordCharacter(QChar character)
{
    return !character.isSpace() && !signs.contains(character);
}

FilterToken FilterTokenizer::next()
{
    while (position_ < text_.size() && text_[position_].isSpace())
        ++position_;
    if (position_ == text_.size())
        return token(TokenKind::End, position_);
    const QChar first = text_[position_];
    if (first == u'"' || first == u'\'')
        return quoted();
    if (first == u'(')
        return token(TokenKind::Open, position_ + 1);
    if (first == u')')
        return token(TokenKind::Close, position_ + 1);
    if (first == u',')
        return token(TokenKind::Comma, position_ + 1);
    for (const QStringView sign : operators) {
        if (text_.sliced(position_).startsWith(sign))
            return token(TokenKind::Operator, position_ + sign.size());
    }
    const auto end = std::find_if_not(text_.begin() + position_, text_.end(), isWordCharacter);
    return token(TokenKind::Word, end - text_.begin());
}

FilterToken FilterTokenizer::token(FilterToken::Kind kind, qsizetype end)
{
    const qsizetype start = std::exchange(position_, end);
    return {kind, text_.sliced(start, end - start).toString(), start, end - start};
}

// Either quote, so that a text may hold the other. There is no escape: a regular expression needs
// its backslashes.
FilterToken FilterTokenizer::quoted()
{
    const qsizetype close = text_.indexOf(text_[position_], position_ + 1);
    FilterToken token = close < 0 ? this->token(TokenKind::Unclosed, text_.size())
                                  : this->token(TokenKind::Quoted, close + 1);
    token.text = token.text.sliced(1);
    if (close >= 0)
        token.text.chop(1);
    return token;
}
