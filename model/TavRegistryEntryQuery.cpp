// SPDX-License-Identifier: Apache-2.0
// The search operations of TavRegistryEntry.
#include "model/EntryQuery.h"
#include "model/EntryStore.h"
#include "model/TavRegistryEntry.h"

#include <QCoreApplication>

namespace {
QString truth(bool isTrue)
{
    return isTrue ? QCoreApplication::translate("TavRegistryEntry", "True")
                  : QCoreApplication::translate("TavRegistryEntry", "False");
}

// Whether a text contains or equals the given one.
PropertyText::Predicate containing(const QString &text, bool substring)
{
    return [text, substring](QStringView candidate) {
        if (text.isNull())
            return false;
        return substring ? !text.isEmpty() && candidate.contains(text, Qt::CaseInsensitive)
                         : candidate.compare(text, Qt::CaseInsensitive) == 0;
    };
}
} // namespace

bool TavRegistryEntry::matchesQuery(const QString &query, FindOptions options,
                                    bool *descendantMatches, const QString &plane)
{
    const std::size_t numberLimit = dataStore_ ? dataStore_->entryNumberLimit() : number_ + 1;
    return EntryQuery(query, options, numberLimit).run(*this, descendantMatches, plane);
}

TavRegistryEntry::SpecialTest TavRegistryEntry::specialTest(const QString &query)
{
    using Entry = TavRegistryEntry;
    constexpr auto isRegistered = [](const Entry &entry) { return entry.isRegistered(); };
    constexpr auto isMatched = [](const Entry &entry) { return entry.isMatched(); };
    constexpr auto isActive = [](const Entry &entry) { return entry.isActive(); };
    constexpr auto isBusy = [](const Entry &entry) { return entry.busyCount() != 0; };
    constexpr auto isNew = [](const Entry &entry) {
        return entry.registryState() == RegistryStateNew;
    };
    constexpr auto isTerminated = [](const Entry &entry) {
        return entry.registryState() == RegistryStateTerminated;
    };
    constexpr auto hasError = [](const Entry &entry) { return entry.hasFinding(Severity::Error); };
    constexpr auto hasWarning = [](const Entry &entry) {
        return entry.hasFinding(Severity::Warning);
    };
    constexpr auto hasNoError = [](const Entry &entry) {
        return !entry.hasFinding(Severity::Error);
    };
    constexpr auto hasNoWarning = [](const Entry &entry) {
        return !entry.hasFinding(Severity::Warning);
    };
    constexpr auto isNotRegistered = [](const Entry &entry) { return !entry.isRegistered(); };
    constexpr auto isNotMatched = [](const Entry &entry) { return !entry.isMatched(); };
    constexpr auto isNotActive = [](const Entry &entry) { return !entry.isActive(); };
    constexpr auto isNotBusy = [](const Entry &entry) { return entry.busyCount() == 0; };
    constexpr auto isNotNew = [](const Entry &entry) {
        return entry.registryState() != RegistryStateNew;
    };
    constexpr auto isNotTerminated = [](const Entry &entry) {
        return entry.registryState() != RegistryStateTerminated;
    };
    static constexpr struct
    {
        QLatin1String word;
        SpecialTest test;
    } words[] = {
        {QLatin1String("registered"), isRegistered},
        {QLatin1String("!registered"), isNotRegistered},
        {QLatin1String("not registered"), isNotRegistered},
        {QLatin1String("matched"), isMatched},
        {QLatin1String("!matched"), isNotMatched},
        {QLatin1String("not matched"), isNotMatched},
        {QLatin1String("active"), isActive},
        {QLatin1String("!active"), isNotActive},
        {QLatin1String("not active"), isNotActive},
        {QLatin1String("busy"), isBusy},
        {QLatin1String("!busy"), isNotBusy},
        {QLatin1String("not busy"), isNotBusy},
        {QLatin1String("new"), isNew},
        {QLatin1String("!new"), isNotNew},
        {QLatin1String("not new"), isNotNew},
        {QLatin1String("dead"), isTerminated},
        {QLatin1String("terminated"), isTerminated},
        {QLatin1String("!dead"), isNotTerminated},
        {QLatin1String("not dead"), isNotTerminated},
        {QLatin1String("!terminated"), isNotTerminated},
        {QLatin1String("not terminated"), isNotTerminated},
        {QLatin1String("error"), hasError},
        {QLatin1String("!error"), hasNoError},
        {QLatin1String("not error"), hasNoError},
        {QLatin1String("warning"), hasWarning},
        {QLatin1String("!warning"), hasNoWarning},
        {QLatin1String("not warning"), hasNoWarning},
    };
    for (const auto &[word, test] : words) {
        if (query == word)
            return test;
    }
    return nullptr;
}

bool TavRegistryEntry::matchesSpecial(const QString &query) const
{
    const SpecialTest test = specialTest(query);
    return test && test(*this);
}

std::optional<Severity> TavRegistryEntry::worstFinding() const
{
    for (const Severity severity : {Severity::Error, Severity::Warning, Severity::Note}) {
        if (hasFinding(severity))
            return severity;
    }
    return std::nullopt;
}

RegistryValue TavRegistryEntry::valueForSpecialProperty(const QString &word) const
{
    const auto is = [&word](const char *special) {
        return word.compare(QLatin1String(special), Qt::CaseInsensitive) == 0;
    };
    if (is("registered"))
        return RegistryValue::string(truth(isRegistered()));
    if (is("matched"))
        return RegistryValue::string(truth(isMatched()));
    if (is("active"))
        return RegistryValue::string(truth(isActive()));
    if (is("busy"))
        return RegistryValue::number(facts_.busyCount, 4);
    return {};
}

bool TavRegistryEntry::containsPropertyName(const QString &name, bool substring) const
{
    return hasProperties() && PropertyText::anyKey(*properties(), containing(name, substring));
}

bool TavRegistryEntry::containsPropertyStringValue(const QString &text, bool substring) const
{
    return hasProperties() && PropertyText::anyString(*properties(), containing(text, substring));
}

void TavRegistryEntry::setDescendantMatchesLastQuery(bool matches, const QString &plane)
{
    descendantMatchesLastQueryInPlanes_[plane] = matches;
}

bool TavRegistryEntry::descendantMatchesLastQueryInPlane(const QString &plane) const
{
    const bool *matches = descendantMatchesLastQueryInPlanes_.find(plane);
    return matches && *matches;
}

void TavRegistryEntry::resetForQuery()
{
    setMatchesLastQuery(false);
    descendantMatchesLastQueryInPlanes_.clear();
}
