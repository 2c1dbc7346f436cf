// SPDX-License-Identifier: Apache-2.0
// Encoding the links between entries.
#include "store/DataStoreEncoder.h"

// Terminated entries keep their children, and entries can be reread alone, so two entries may each
// claim to be above the other. Such a snapshot could not be opened again.
bool DataStoreEncoder::settleLinks()
{
    archiver_.reference(store_, storeClass_); // the root of the archive
    for (const EntryRef &entry : store_.registryEntries())
        archiver_.reference(*entry, entryClass_);
    const quint64 maxPaths = LinkChecker::pathLimit(store_.registryEntries().size());
    for (Relatives *relatives : {&children_, &parents_}) {
        const LinkChecker links = linksTo(*relatives);
        LinkChecker::Finding finding = links.check(maxPaths);
        if (finding == LinkChecker::Finding::Cycle) {
            relatives->leftOut = links.closingLinks();
            finding = linksTo(*relatives).check(maxPaths);
        }
        if (finding != LinkChecker::Finding::Sound)
            return false;
    }
    return true;
}

LinkChecker DataStoreEncoder::linksTo(const Relatives &relatives)
{
    LinkChecker links(relatives.direction);
    std::vector<quint32> numbers;
    for (const EntryRef &entry : store_.registryEntries()) {
        const quint32 number = archiver_.reference(*entry, entryClass_).index;
        for (const auto &item : entry->facts().*relatives.table) {
            numbers.clear();
            for (const ArchiveReference relative : writtenRelatives(number, relatives, item))
                numbers.push_back(relative.index);
            links.add(item.plane(), number, numbers);
        }
    }
    return links;
}

void DataStoreEncoder::encodeRelatives(const TavRegistryEntry &entry, const Relatives &relatives)
{
    const quint32 number = archiver_.reference(entry, entryClass_).index;
    ArchiveDictionary dictionary;
    for (const auto &item : entry.facts().*relatives.table) {
        const std::vector<ArchiveReference> list = writtenRelatives(number, relatives, item);
        if (!list.empty())
            dictionary.push_back({item.plane(), ArchiveList(list.begin(), list.end())});
    }
    archiver_.encodeValue(relatives.key, dictionary);
}

std::vector<ArchiveReference>
DataStoreEncoder::writtenRelatives(quint32 number, const Relatives &relatives,
                                   const PlaneMap<EntryList>::Item &item)
{
    const auto leftOut = relatives.leftOut.constFind(item.plane());
    std::vector<ArchiveReference> references;
    references.reserve(item.value.entries().size());
    for (const TavRegistryEntry *relative : item.value.entries()) {
        const ArchiveReference reference = archiver_.reference(*relative, entryClass_);
        if (leftOut == relatives.leftOut.constEnd() ||
            !leftOut->contains({number, reference.index}))
            references.push_back(reference);
    }
    return references;
}
