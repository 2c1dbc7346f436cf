#include "model/EntryQuery.h"

#include "model/TavRegistryEntry.h"

namespace {
// Numbers queries and the walks of each, so that entries know which answer they hold.
quint32 nextNumber()
{
    static quint32 last = 0;
    return ++last;
}
} // namespace

EntryQuery::EntryQuery(const QString &query, FindOptions options)
    : query_(query)
    , options_(options)
    , search_(query, true)
    , number_(nextNumber())
{}

bool EntryQuery::run(TavRegistryEntry &top, bool *descendantMatches, const QString &plane)
{
    if (!descendantMatches || plane.isNull()) {
        top.setMatchesLastQuery(matches(top, plane));
    } else {
        walk(top, plane);
        if (top.descendantMatchesLastQueryInPlane(plane))
            *descendantMatches = true;
    }
    return top.matchesLastQuery();
}

// Children first, since a parent tells whether any below it matched.
void EntryQuery::walk(TavRegistryEntry &top, const QString &plane)
{
    struct Step
    {
        TavRegistryEntry *entry;
        std::size_t nextChild;
        bool hasMatchBelow;
    };
    const quint32 walkNumber = nextNumber();
    std::vector<Step> steps{{&top, 0, false}};
    top.visitedWalk_ = walkNumber;
    while (!steps.empty()) {
        Step &step = steps.back();
        const auto &children = step.entry->childrenInPlane(plane);
        if (step.nextChild < children.size()) {
            TavRegistryEntry *const child = children[step.nextChild++];
            if (child->visitedWalk_ != walkNumber) {
                child->visitedWalk_ = walkNumber;
                steps.push_back({child, 0, false});
            } else if (child->matchesLastQuery() ||
                       child->descendantMatchesLastQueryInPlane(plane)) {
                step.hasMatchBelow = true;
            }
            continue;
        }
        TavRegistryEntry &entry = *step.entry;
        const bool hasMatchBelow = step.hasMatchBelow;
        if (hasMatchBelow)
            entry.setDescendantMatchesLastQuery(true, plane);
        entry.setMatchesLastQuery(matches(entry, plane));
        steps.pop_back();
        if (!steps.empty() && (hasMatchBelow || entry.matchesLastQuery()))
            steps.back().hasMatchBelow = true;
    }
}

bool EntryQuery::matches(TavRegistryEntry &entry, const QString &plane)
{
    if (looksAt(FindOption::Name) && search_.matches(entry.nameAtLocationInPlane(plane)))
        return true;
    if (entry.answeredQuery_ != number_) {
        entry.answeredQuery_ = number_;
        entry.matchesInAnyPlane_ = matchesInAnyPlane(entry);
    }
    return entry.matchesInAnyPlane_;
}

bool EntryQuery::matchesInAnyPlane(const TavRegistryEntry &entry) const
{
    if (looksAt(FindOption::Class) && search_.matches(entry.DxcoreClass()))
        return true;
    if (looksAt(FindOption::Inheritance)) {
        for (const QString &className : entry.inheritance()) {
            if (search_.matches(className))
                return true;
        }
    }
    if (looksAt(FindOption::BundleID) && search_.matches(entry.bundleID()))
        return true;
    if (const TavRegistryProperty *table = entry.properties()) {
        if (looksAt(FindOption::Keys) && containsName(*table, search_))
            return true;
        if (looksAt(FindOption::Values) && containsString(*table, search_))
            return true;
    }
    return looksAt(FindOption::Special) && entry.matchesSpecial(query_);
}

// The order in which the nodes are looked at cannot be seen from the answer.
bool EntryQuery::containsName(const TavRegistryProperty &table, const TextSearch &search)
{
    return table.anyBelow([&](const TavRegistryProperty &node) {
        return node.parent()->valueType() == RegistryValue::Type::Dictionary &&
               search.matches(node.nameView());
    });
}

bool EntryQuery::containsString(const TavRegistryProperty &table, const TextSearch &search)
{
    const auto isFound = [&](const TavRegistryProperty &node) {
        return !node.isCollection() && search.matches(node.stringView());
    };
    return isFound(table) || table.anyBelow(isFound);
}
