// SPDX-License-Identifier: Apache-2.0
#include "display/comparison/DifferenceWords.h"

#include "display/export/EntryFactTexts.h"

std::span<const DifferenceKind> DifferenceWords::kinds()
{
    using enum DifferenceKind;
    static constexpr DifferenceKind kinds[] = {Added, Removed, Moved, Renamed, Changed};
    return kinds;
}

QChar DifferenceWords::sign(DifferenceKind kind)
{
    switch (kind) {
    case DifferenceKind::Added:
        return u'+';
    case DifferenceKind::Removed:
        return u'-';
    case DifferenceKind::Moved:
        return u'>';
    case DifferenceKind::Renamed:
        return u'~';
    case DifferenceKind::Changed:
        return u'*';
    case DifferenceKind::Same:
        break;
    }
    return u' ';
}

QString DifferenceWords::word(DifferenceKind kind)
{
    switch (kind) {
    case DifferenceKind::Added:
        return tr("added");
    case DifferenceKind::Removed:
        return tr("removed");
    case DifferenceKind::Moved:
        return tr("moved");
    case DifferenceKind::Renamed:
        return tr("renamed");
    case DifferenceKind::Changed:
        return tr("changed");
    case DifferenceKind::Same:
        break;
    }
    return tr("same");
}

QString DifferenceWords::factTitle(FactDifference fact)
{
    using Fact = EntryFactTexts::Fact;
    switch (fact) {
    case FactDifference::Name:
        return EntryFactTexts::title(Fact::Name);
    case FactDifference::Location:
        return tr("Location");
    case FactDifference::Parent:
        return tr("Parent");
    case FactDifference::Class:
        return EntryFactTexts::title(Fact::Class);
    case FactDifference::Driver:
        return tr("Driver");
    case FactDifference::State:
        return EntryFactTexts::title(Fact::Service);
    case FactDifference::Links:
        return tr("Links");
    case FactDifference::Properties:
        break;
    }
    return tr("Properties");
}

QString DifferenceWords::identifier(DifferenceKind kind)
{
    switch (kind) {
    case DifferenceKind::Added:
        return QStringLiteral("added");
    case DifferenceKind::Removed:
        return QStringLiteral("removed");
    case DifferenceKind::Moved:
        return QStringLiteral("moved");
    case DifferenceKind::Renamed:
        return QStringLiteral("renamed");
    case DifferenceKind::Changed:
        return QStringLiteral("changed");
    case DifferenceKind::Same:
        break;
    }
    return QStringLiteral("same");
}

QString DifferenceWords::factIdentifier(FactDifference fact)
{
    switch (fact) {
    case FactDifference::Name:
        return QStringLiteral("name");
    case FactDifference::Location:
        return QStringLiteral("location");
    case FactDifference::Parent:
        return QStringLiteral("parent");
    case FactDifference::Class:
        return QStringLiteral("class");
    case FactDifference::Driver:
        return QStringLiteral("driver");
    case FactDifference::State:
        return QStringLiteral("state");
    case FactDifference::Links:
        return QStringLiteral("links");
    case FactDifference::Properties:
        break;
    }
    return QStringLiteral("properties");
}
