// The search operations of TavRegistryEntry.
#include "model/EntryQuery.h"
#include "model/TavRegistryEntry.h"

#include <QCoreApplication>

namespace {
QString truth(bool isTrue)
{
    return isTrue ? QCoreApplication::translate("TavRegistryEntry", "True")
                  : QCoreApplication::translate("TavRegistryEntry", "False");
}
} // namespace

bool TavRegistryEntry::matchesQuery(const QString &query, FindOptions options,
                                    bool *descendantMatches, const QString &plane)
{
    return EntryQuery(query, options).run(*this, descendantMatches, plane);
}

bool TavRegistryEntry::matchesSpecial(const QString &query) const
{
    struct Word
    {
        const char *word;
        bool isTrue;
    };
    const bool isNew = registryState_ == RegistryStateNew;
    const bool isTerminated = registryState_ == RegistryStateTerminated;
    const Word words[] = {
        {"registered", isRegistered()},
        {"!registered", !isRegistered()},
        {"not registered", !isRegistered()},
        {"matched", isMatched()},
        {"!matched", !isMatched()},
        {"not matched", !isMatched()},
        {"active", isActive()},
        {"!active", !isActive()},
        {"not active", !isActive()},
        {"busy", busyCount_ != 0},
        {"!busy", busyCount_ == 0},
        {"not busy", busyCount_ == 0},
        {"new", isNew},
        {"!new", !isNew},
        {"not new", !isNew},
        {"dead", isTerminated},
        {"terminated", isTerminated},
        {"!dead", !isTerminated},
        {"not dead", !isTerminated},
        {"!terminated", !isTerminated},
        {"not terminated", !isTerminated},
    };
    for (const auto &[word, isTrue] : words) {
        if (query == QLatin1String(word))
            return isTrue;
    }
    return false;
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
        return RegistryValue::number(busyCount_, 4);
    return {};
}

bool TavRegistryEntry::containsPropertyName(const QString &name, bool substring) const
{
    return properties_ && EntryQuery::containsName(*properties_, TextSearch(name, substring));
}

bool TavRegistryEntry::containsPropertyStringValue(const QString &text, bool substring) const
{
    return properties_ && EntryQuery::containsString(*properties_, TextSearch(text, substring));
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
