// SPDX-License-Identifier: Apache-2.0
#include "model/EntryQuery.h"

#include "model/MatchMarks.h"

EntryQuery::EntryQuery(const QString &query, FindOptions options, std::size_t numberLimit,
                       ShownValueTest shownValues)
    : special_(TavRegistryEntry::specialTest(query))
    , options_(options)
    , search_(query)
    , shownValues_(options.testFlag(FindOption::ShownValues) ? std::move(shownValues) : nullptr)
    , asksForLocation_(query.contains(u'@'))
    , answers_(std::make_shared<std::vector<Answer>>(numberLimit))
{}

bool EntryQuery::run(TavRegistryEntry &top, bool *descendantMatches, const QString &plane)
{
    if (!descendantMatches || plane.isNull()) {
        top.setMatchesLastQuery(matches(top, plane));
    } else {
        if (run(EntryOrder(top, plane)))
            *descendantMatches = true;
    }
    return top.matchesLastQuery();
}

bool EntryQuery::run(const EntryOrder &order)
{
    return markMatches(
        order, [&](const TavRegistryEntry &entry) { return matches(entry, order.plane()); });
}

void EntryQuery::fetch(const TavRegistryEntry &next)
{
    __builtin_prefetch(&next);
    __builtin_prefetch(&next.propertyText());
    __builtin_prefetch(&next.facts().childrenInPlanes);
    __builtin_prefetch(&next.facts().inheritance);
}

void EntryQuery::fetchProperties(const TavRegistryEntry &next) const
{
    __builtin_prefetch(next.inheritance().constData());
    __builtin_prefetch(next.facts().name.constData());
    constexpr qsizetype lineSize = 64;
    constexpr qsizetype defaultSize = 6 * lineSize;
    const auto fetchLines = [](const void *start) {
        for (qsizetype at = 0; at < defaultSize; at += lineSize)
            __builtin_prefetch(static_cast<const char *>(start) + at);
    };
    if (looksAt(FindOption::Keys) || looksAt(FindOption::Values))
        fetchLines(next.propertyText().strings().data());
    if (shownValues_)
        fetchLines(next.propertyText().values().data());
}

void EntryQuery::prepare(std::span<const EntryRef> entries)
{
    for (std::size_t i = 0; i < entries.size(); ++i) {
        if (i + 4 < entries.size())
            fetch(*entries[i + 4]);
        if (i + 2 < entries.size())
            fetchProperties(*entries[i + 2]);
        entries[i]->resetForQuery();
        prepare(*entries[i]);
    }
}

EntryQuery::Answer EntryQuery::prepare(const TavRegistryEntry &entry)
{
    Answer &answer = (*answers_)[entry.number()];
    if (answer != Answer::Unknown)
        return answer;
    if (matchesInAnyPlane(entry))
        answer = Answer::Yes;
    else if (looksAt(FindOption::Name) && matchesByNameSomewhere(entry))
        answer = Answer::ByName;
    else
        answer = Answer::No;
    return answer;
}

bool EntryQuery::matches(const TavRegistryEntry &entry, const QString &plane)
{
    const Answer answer = prepare(entry);
    if (answer == Answer::ByName)
        return matchesByName(entry.nameInPlane(plane), entry.locationInPlane(plane));
    return answer == Answer::Yes;
}

// Whether the entry certainly has one name in all planes, as most do.
bool EntryQuery::hasOneName(const TavRegistryEntry &entry)
{
    return entry.facts().namesInPlanes.areAllAt(entry.facts().name.constData()) &&
           entry.facts().locationsInPlanes.areAllAt(entry.facts().location.constData());
}

// Whether the entry's name matches in any plane, read or not.
bool EntryQuery::matchesByNameSomewhere(const TavRegistryEntry &entry)
{
    if (matchesByName(entry.facts().name, entry.facts().location))
        return true;
    if (hasOneName(entry))
        return false;
    for (const auto *table : {&entry.facts().namesInPlanes, &entry.facts().locationsInPlanes}) {
        for (std::size_t i = 0; i < table->size(); ++i) {
            const QString plane = table->plane(i);
            if (matchesByName(entry.nameInPlane(plane), entry.locationInPlane(plane)))
                return true;
        }
    }
    return false;
}

// Matches the text "name@location". Only what could match across the "@" is put together, because
// many entries may share one long name.
bool EntryQuery::matchesByName(const QString &name, const QString &location)
{
    if (search_.matchesKept(name))
        return true;
    if (location.isNull())
        return false;
    if (search_.matchesKept(location))
        return true;
    if (!asksForLocation_)
        return false;
    const qsizetype reach = search_.length() - 1;
    seam_.resize(0);
    seam_.append(QStringView(name).last(std::min(reach, name.size())));
    seam_.append(u'@').append(QStringView(location).first(std::min(reach, location.size())));
    return search_.matches(seam_);
}

// The name of the device counts as a name of the entry, in every plane.
bool EntryQuery::matchesDeviceName(const TavRegistryEntry &entry) const
{
    const DeviceName *const device = entry.deviceName();
    return device && search_.matchesKept(device->title());
}

bool EntryQuery::matchesInAnyPlane(const TavRegistryEntry &entry) const
{
    if (looksAt(FindOption::Name) && matchesDeviceName(entry))
        return true;
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
    if (matchesInProperties(entry) || (shownValues_ && shownValues_(entry)))
        return true;
    return looksAt(FindOption::Special) && special_ && special_(entry);
}

// Cached: entries of one kind share their keys.
bool EntryQuery::matchesKeys(QByteArrayView keys) const
{
    if (keys.data() != lastKeys_.data() || keys.size() != lastKeys_.size()) {
        lastKeys_ = keys;
        lastKeysMatch_ = search_.matchesAnyOf(keys);
    }
    return lastKeysMatch_;
}

bool EntryQuery::matchesInProperties(const TavRegistryEntry &entry) const
{
    const bool keys = looksAt(FindOption::Keys);
    const bool values = looksAt(FindOption::Values);
    if (!keys && !values)
        return false;
    const PropertyText &text = entry.propertyText();
    if ((keys && matchesKeys(text.keys())) || (values && search_.matchesAnyOf(text.strings())))
        return true;
    if (text.isWhole())
        return false;
    const auto matches = [this](QStringView candidate) { return search_.matchesKept(candidate); };
    return (keys && PropertyText::anyKey(*entry.properties(), matches)) ||
           (values && PropertyText::anyString(*entry.properties(), matches));
}
