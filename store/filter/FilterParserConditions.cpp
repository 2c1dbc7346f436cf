// SPDX-License-Identifier: Apache-2.0
// The conditions of a filter expression: a field, and what it is compared with.
#include "store/filter/FilterFields.h"
#include "store/filter/FilterParser.h"

bool FilterParser::readExists(FilterTest &test)
{
    advance();
    const FilterToken open = token_;
    advance();
    test.relation = Relation::Exists;
    if (!readField(test.field))
        return false;
    return readClose(open, tr("“)” is missing before “%1”"));
}

bool FilterParser::readUnder(FilterTest &test)
{
    advance();
    const FilterToken open = token_;
    advance();
    test.relation = Relation::Under;
    QString name;
    if (!readText(name))
        return false;
    test.ancestorNumber = static_cast<std::size_t>(content_->ancestors.size());
    content_->ancestors.append(name);
    return readClose(open, tr("“)” is missing before “%1”"));
}

bool FilterParser::readField(FilterField &field)
{
    if (isPropertyAhead())
        return readProperty(field);
    if (token_.kind == Kind::End)
        return failAfter(tr("A condition is missing after “%1”"));
    if (token_.kind == Kind::Operator && token_.text == u"!")
        return fail(tr("Write “not” instead of “!”"), token_);
    if (token_.kind == Kind::Quoted)
        return fail(tr("Quotes make a text; a key needs none, or prop(…) around them"), token_);
    const bool isReserved = isWord(u"and") || isWord(u"or") || isWord(u"in");
    if (token_.kind != Kind::Word || isReserved)
        return fail(tr("A condition is missing before “%1”").arg(token_.text), token_);
    if (FilterQuantity::parse(token_.text))
        return fail(tr("A number cannot stand here; write the key first"), token_);
    if (following().kind == Kind::Open)
        return fail(tr("There is no “%1”, but exists(…), prop(…) and under(…)").arg(token_.text),
                    token_);
    if (const auto kind = FilterFields::fieldNamed(token_.text)) {
        field.kind = *kind;
        advance();
        return true;
    }
    return readKeys(field, token_.text);
}

// "@key" or "prop(key)".
bool FilterParser::readProperty(FilterField &field)
{
    if (token_.text.startsWith(u'@'))
        return readKeys(field, token_.text.sliced(1));
    advance();
    const FilterToken open = token_;
    advance();
    if (!isValueAhead())
        return failAfter(tr("A key is missing after “%1”"));
    if (!readKeys(field, token_.text))
        return false;
    return readClose(open, tr("“)” is missing before “%1”"));
}

// False for a path without keys.
bool FilterParser::setKeys(FilterField &field, const QString &path)
{
    field.kind = FilterField::Kind::Property;
    field.keys = path.split(u'/', Qt::SkipEmptyParts);
    if (field.keys.isEmpty())
        return false;
    field.number = content_->properties.size();
    content_->properties.push_back(field.keys);
    return true;
}

// Of the current token.
bool FilterParser::readKeys(FilterField &field, const QString &path)
{
    if (!setKeys(field, path))
        return fail(tr("“%1” is no key").arg(token_.text), token_);
    advance();
    return true;
}

bool FilterParser::readRelation(FilterTest &test)
{
    static constexpr std::pair<QStringView, Relation> comparisons[] = {
        {u"==", Relation::Equal},          {u"=", Relation::Equal},
        {u"!=", Relation::Unequal},        {u"<", Relation::Less},
        {u"<=", Relation::LessOrEqual},    {u">", Relation::Greater},
        {u">=", Relation::GreaterOrEqual}, {u"~", Relation::Contains},
        {u"=~", Relation::Matches},
    };
    if (isWord(u"in"))
        return readIn(test);
    if (token_.kind != Kind::Operator)
        return true; // the field alone
    const auto *const found =
        std::find_if(std::begin(comparisons), std::end(comparisons),
                     [&](const auto &comparison) { return comparison.first == token_.text; });
    if (found == std::end(comparisons))
        return fail(tr("“%1” is no operator").arg(token_.text), token_);
    test.relation = found->second;
    advance();
    switch (test.relation) {
    case Relation::Contains:
    case Relation::Matches:
        return readSearch(test);
    default:
        return readOperand(test);
    }
}

bool FilterParser::readIn(FilterTest &test)
{
    test.relation = Relation::In;
    advance();
    const FilterToken open = token_;
    if (token_.kind != Kind::Open)
        return failAfter(tr("“(” is missing after “%1”"));
    do {
        advance();
        if (!readValue(test))
            return false;
    } while (token_.kind == Kind::Comma);
    return readClose(open, tr("“,” or “)” is missing before “%1”"));
}

bool FilterParser::readText(QString &text)
{
    if (!isValueAhead())
        return failAfter(tr("A value is missing after “%1”"));
    text = token_.text;
    advance();
    return true;
}

bool FilterParser::readValue(FilterTest &test)
{
    QString text;
    if (!readText(text))
        return false;
    const bool isQuoted = previous_.kind == Kind::Quoted;
    test.values.push_back(FilterValue::literal(text, isQuoted));
    if (test.field.kind == FilterField::Kind::State && !FilterFields::stateWords().contains(text))
        return fail(tr("There is no state “%1”, but %2")
                        .arg(text, FilterFields::stateWords().join(QStringLiteral(", "))),
                    previous_);
    return true;
}

// A word that is no number may be the key of another property. The facts have words of their own.
bool FilterParser::readOperand(FilterTest &test)
{
    if (isPropertyAhead())
        return readProperty(test.otherField.emplace());
    if (!readValue(test))
        return false;
    const bool mayBeKey = previous_.kind == Kind::Word && !FilterQuantity::parse(previous_.text) &&
                          test.field.kind == FilterField::Kind::Property;
    FilterField other;
    if (mayBeKey && setKeys(other, previous_.text))
        test.otherField = other;
    return true;
}

bool FilterParser::readSearch(FilterTest &test)
{
    QString text;
    if (!readText(text))
        return false;
    if (test.relation == Relation::Contains) {
        test.matcher = QStringMatcher(text, Qt::CaseInsensitive);
        return true;
    }
    auto error = test.pattern.compile(text);
    if (!error)
        return true;
    const qsizetype start = previous_.position + (previous_.kind == Kind::Quoted ? 1 : 0);
    error_ = FilterError{error->message, start + error->position, error->length};
    return false;
}
