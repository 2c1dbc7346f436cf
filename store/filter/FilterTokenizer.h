// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

// A word, a quoted text or a sign of a filter expression, and its place there.
struct FilterToken
{
    enum class Kind : quint8 {
        End,
        Word,
        Quoted,
        Unclosed, // a quoted text without its second quote
        Operator,
        Open,
        Close,
        Comma,
    };

    Kind kind = Kind::End;
    QString text = {}; // without quotes
    qsizetype position = 0;
    qsizetype length = 0; // with quotes
};

// Splits the text of a filter expression. A word ends at a space, a quote or a sign, so
// "0000:00:1f.2" and "power/control" are words.
class FilterTokenizer
{
public:
    // The text must stay.
    explicit FilterTokenizer(QStringView text)
        : text_(text)
    {}

    FilterToken next();
    static bool isWordCharacter(QChar character);

private:
    FilterToken token(FilterToken::Kind kind, qsizetype end);
    FilterToken quoted();

    QStringView text_;
    qsizetype position_ = 0;
};
