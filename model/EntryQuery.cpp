#include "model/EntryQuery.h"

#include "model/TavRegistryEntry.h"

namespace {
// Numbers queries and the walks of each, so that entries know which answer they hold.
quint32 nextNumber()
{
    static quint32 last = 0;
    return ++last;
}

bool isKey(const TavRegistryProperty &node, const TextSearch &search)
{
    return node.parent()->valueType() == RegistryValue::Type::Dictionary &&
           search.matchesKept(node.nameView());
}

bool holdsString(const TavRegistryProperty &node, const TextSearch &search)
{
    // A terminated copy no longer knows its type.
    const bool mayBeString = node.valueType() == RegistryValue::Type::String ||
                             node.valueType() == RegistryValue::Type::None;
    return mayBeString && !node.isCollection() && search.matchesKept(node.stringView());
}
} // namespace

EntryQuery::EntryQuery(const QString &query, FindOptions options)
    : query_(query)
    , options_(options)
    , search_(query, true)
    , settled_(nextNumber())
    , open_(nextNumber())
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

// A walk waits for memory more than for anything else: this saves a sixth of it.
void EntryQuery::fetch(const TavRegistryEntry &next)
{
    __builtin_prefetch(&next.visitedWalk_);
    __builtin_prefetch(&next.childrenInPlanes_);
    __builtin_prefetch(&next.inheritance_);
}

// Children first, since a parent tells whether any below it matched.
void EntryQuery::walk(TavRegistryEntry &top, const QString &plane)
{
    struct Step
    {
        TavRegistryEntry *entry;
        const EntryList::Entries *children;
        std::size_t nextChild;
        bool hasMatchBelow;
    };
    const quint32 walkNumber = nextNumber();
    std::vector<Step> steps;
    const auto enter = [&](TavRegistryEntry &entry) {
        entry.visitedWalk_ = walkNumber;
        steps.push_back({&entry, &entry.childrenInPlane(plane), 0, false});
    };
    enter(top);
    while (!steps.empty()) {
        Step &step = steps.back();
        if (step.nextChild < step.children->size()) {
            TavRegistryEntry *const child = (*step.children)[step.nextChild++];
            if (step.nextChild < step.children->size())
                fetch(*(*step.children)[step.nextChild]);
            if (child->visitedWalk_ != walkNumber) {
                enter(*child);
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

void EntryQuery::prepare(TavRegistryEntry &entry)
{
    if (entry.answeredQuery_ == settled_ || entry.answeredQuery_ == open_)
        return;
    entry.matchesInAnyPlane_ = matchesInAnyPlane(entry);
    const bool nameDecides =
        !entry.matchesInAnyPlane_ && looksAt(FindOption::Name) && matchesByNameSomewhere(entry);
    entry.answeredQuery_ = nameDecides ? open_ : settled_;
}

bool EntryQuery::matches(TavRegistryEntry &entry, const QString &plane)
{
    prepare(entry);
    if (entry.answeredQuery_ == settled_)
        return entry.matchesInAnyPlane_;
    return matchesByName(entry.nameInPlane(plane), entry.locationInPlane(plane));
}

// Whether every plane gives the entry the same name, as most do; false if that takes a closer look.
bool EntryQuery::hasOneName(const TavRegistryEntry &entry)
{
    const auto areAll = [](const PlaneTable<CompactString> &table, const QString &text) {
        return std::all_of(table.begin(), table.end(),
                           [&](const auto &item) { return item.value.data() == text.constData(); });
    };
    return areAll(entry.namesInPlanes_, entry.name_) &&
           areAll(entry.locationsInPlanes_, entry.location_);
}

// Whether any plane, read or not, gives the entry a name that matches.
bool EntryQuery::matchesByNameSomewhere(const TavRegistryEntry &entry)
{
    if (matchesByName(entry.name_, entry.location_))
        return true;
    if (hasOneName(entry))
        return false;
    for (const auto *table : {&entry.namesInPlanes_, &entry.locationsInPlanes_}) {
        for (const auto &item : *table) {
            const QString plane = item.plane();
            if (matchesByName(entry.nameInPlane(plane), entry.locationInPlane(plane)))
                return true;
        }
    }
    return false;
}

bool EntryQuery::matchesByName(const QString &name, const QString &location)
{
    if (location.isNull())
        return search_.matchesKept(name);
    name_.resize(0);
    return search_.matches(name_.append(name).append(u'@').append(location));
}

bool EntryQuery::matchesInAnyPlane(const TavRegistryEntry &entry) const
{
    if (looksAt(FindOption::Class) && search_.matchesKept(entry.DxcoreClass()))
        return true;
    if (looksAt(FindOption::Inheritance)) {
        for (const QString &className : entry.inheritance()) {
            if (search_.matchesKept(className))
                return true;
        }
    }
    if (looksAt(FindOption::BundleID) && search_.matchesKept(entry.bundleID()))
        return true;
    if (entry.properties() && containsNameOrString(*entry.properties()))
        return true;
    return looksAt(FindOption::Special) && entry.matchesSpecial(query_);
}

// In one walk, since the order in which the nodes are looked at cannot be seen from the answer.
bool EntryQuery::containsNameOrString(const TavRegistryProperty &table) const
{
    if (looksAt(FindOption::Keys) && looksAt(FindOption::Values))
        return holdsString(table, search_) || table.anyBelow([&](const TavRegistryProperty &node) {
            return isKey(node, search_) || holdsString(node, search_);
        });
    return (looksAt(FindOption::Keys) && containsName(table, search_)) ||
           (looksAt(FindOption::Values) && containsString(table, search_));
}

bool EntryQuery::containsName(const TavRegistryProperty &table, const TextSearch &search)
{
    return table.anyBelow([&](const TavRegistryProperty &node) { return isKey(node, search); });
}

bool EntryQuery::containsString(const TavRegistryProperty &table, const TextSearch &search)
{
    return holdsString(table, search) || table.anyBelow([&](const TavRegistryProperty &node) {
        return holdsString(node, search);
    });
}
