// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "store/filter/FilterPattern.h"
#include "store/filter/FilterValue.h"

#include <QStringList>
#include <QStringMatcher>

// What stands left of an operator: a fact of the entry, or a property.
struct FilterField
{
    enum class Kind : quint8 {
        Property,
        Name,
        Class,
        Inheritance,
        Bundle,
        State,
        Path,
        Plane,
    };

    Kind kind = Kind::Property;
    QStringList keys = {};  // of a property, from the outside in
    std::size_t number = 0; // of a property, among those of the expression
};

// A condition without conditions in it.
struct FilterTest
{
    enum class Relation : quint8 {
        IsTrue, // is there, and not false
        Exists,
        Equal,
        Unequal,
        Less,
        LessOrEqual,
        Greater,
        GreaterOrEqual,
        Contains,
        Matches,
        In,
        Under,
    };

    Relation relation = Relation::IsTrue;
    FilterField field = {};
    std::vector<FilterValue> values = {}; // to compare with; any of them
    // To compare with instead, if the entry has it.
    std::optional<FilterField> otherField = {};
    QStringMatcher matcher = {};    // of Contains
    FilterPattern pattern = {};     // of Matches
    std::size_t ancestorNumber = 0; // of Under, among those of the expression
};

// A filter expression as a tree. And and Or have any number of parts, Not has one.
struct FilterNode
{
    enum class Kind : quint8 { And, Or, Not, Test };

    Kind kind = Kind::Test;
    std::vector<FilterNode> parts = {};
    FilterTest test = {};
};
