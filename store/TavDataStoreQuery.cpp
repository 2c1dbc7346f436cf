// The search operation of TavDataStore.
#include "model/EntryQuery.h"
#include "store/TavDataStore.h"

void TavDataStore::runQuery(const QString &query, FindOptions options, EntrySet *matches,
                            QHash<QString, EntrySet> *parentsOfMatches)
{
    // The inheritance has the entry's own class too.
    if (options.testFlag(FindOption::Inheritance))
        options.setFlag(FindOption::Class, false);
    EntryQuery search(query, options);
    for (const EntryRef &entry : registryEntries_) {
        entry->resetForQuery();
        search.prepare(*entry);
    }
    bool scratch = false;
    if (TavRegistryEntry *const root = registryRoot()) {
        for (const QString &plane : registryPlanes_)
            search.run(*root, &scratch, plane);
    }
    if (!matches && !parentsOfMatches)
        return;
    for (const EntryRef &entry : registryEntries_) {
        if (matches && entry->matchesLastQuery())
            matches->insert(entry.get());
    }
    if (!parentsOfMatches)
        return;
    for (const QString &plane : registryPlanes_) {
        EntrySet parents;
        for (const EntryRef &entry : registryEntries_) {
            if (entry->descendantMatchesLastQueryInPlane(plane))
                parents.insert(entry.get());
        }
        parentsOfMatches->insert(plane, parents);
    }
}
