// SPDX-License-Identifier: Apache-2.0
#include "store/StoreBuilder.h"

#include "platform/runloop/NotificationCenter.h"
#include "store/DataStoreNotifications.h"

namespace {
NamesByPlane copyOf(const NamesByPlane &names)
{
    NamesByPlane::Strings planes;
    NamesByPlane::Strings texts;
    for (std::size_t i = 0; i < names.size(); ++i) {
        planes.emplace_back(names.plane(i));
        texts.push_back(names.name(i));
    }
    NamesByPlane copy;
    if (!planes.empty())
        copy.assign(std::move(planes), texts);
    return copy;
}

using Copies = QHash<const TavRegistryEntry *, TavRegistryEntry *>;

PlaneMap<EntryList> copyOf(const PlaneMap<EntryList> &relatives, const Copies &copies)
{
    PlaneMap<EntryList> result;
    result.reserve(relatives.size());
    for (const auto &item : relatives) {
        EntryList::Entries own;
        own.reserve(item.value.entries().size());
        for (const TavRegistryEntry *relative : item.value.entries()) {
            if (TavRegistryEntry *const copy = copies.value(relative))
                own.push_back(copy);
        }
        result[item.plane()].setOrder(std::move(own));
    }
    return result;
}
} // namespace

StoreBuilder::StoreBuilder()
    : store_(new TavDataStore)
{}

void StoreBuilder::takeMachineFacts(const TavDataStore &from, const QStringList &planes)
{
    store_->hostName_ = from.hostName_;
    store_->archName_ = from.archName_;
    store_->byteOrder_ = from.byteOrder_;
    store_->bundleService_ = from.bundleService_;
    store_->lastUpdateDate_ = from.lastUpdateDate_;
    store_->isUpToDate_ = from.isUpToDate_;
    store_->registryPlanes_ = planes;
}

EntryRef StoreBuilder::addEntry()
{
    EntryRef entry = TavRegistryEntry::createEmpty();
    entry->_setDataStore(store_.get());
    store_->registryEntries_.push_back(entry);
    store_->forgetTags();
    return entry;
}

void StoreBuilder::setEntries(std::vector<EntryRef> entries)
{
    EntrySet leaving;
    for (const EntryRef &entry : store_->registryEntries_)
        leaving.insert(entry.get());
    for (const EntryRef &entry : entries)
        leaving.remove(entry.get());
    for (TavRegistryEntry *const entry : leaving)
        entry->leaveStore();
    store_->registryEntries_ = std::move(entries);
    store_->forgetTags();
    store_->restartEntryNumbers();
    for (const EntryRef &entry : store_->registryEntries_)
        entry->setNumber(store_->takeEntryNumber());
    store_->locator_.reset();
}

void StoreBuilder::announceChange()
{
    store_->post(DataStoreNotifications::changed);
}

EntryRecord StoreBuilder::factsWithoutLinks(const TavRegistryEntry &entry)
{
    const EntryRecord &facts = entry.facts();
    return {.entryTag = facts.entryTag,
            .dateDiscovered = facts.dateDiscovered,
            .dateLastUpdated = facts.dateLastUpdated,
            .dateTerminated = facts.dateTerminated,
            .bundleID = facts.bundleID,
            .inheritance = facts.inheritance,
            .name = facts.name,
            .location = facts.location,
            .kernelPath = facts.kernelPath,
            .namesInPlanes = ::copyOf(facts.namesInPlanes),
            .locationsInPlanes = ::copyOf(facts.locationsInPlanes),
            .registryState = facts.registryState,
            .busyCount = facts.busyCount,
            .kernelRetainCount = facts.kernelRetainCount,
            .flags = facts.flags};
}

void StoreBuilder::copyProperties(const TavRegistryEntry &entry, TavRegistryEntry &copy)
{
    copy.setDeviceName(entry.deviceNameRef());
    if (!entry.hasProperties())
        return copy.setTable({}, {});
    if (entry.table().isNone())
        return copy.setTree(entry.copyOfProperties(TavRegistryEntry::currentPropertyClass()));
    if (!entry.table().isSameCollectionAs(copy.table()))
        copy.setTable(entry.table(), entry.dateRead());
}

std::shared_ptr<TavDataStore> StoreBuilder::copyOf(const TavDataStore &original)
{
    StoreBuilder builder;
    builder.takeMachineFacts(original, original.registryPlanes());
    Copies copies;
    copies.reserve(static_cast<qsizetype>(original.registryEntries().size()));
    for (const EntryRef &entry : original.registryEntries())
        copies.insert(entry.get(), builder.addEntry().get());
    for (const EntryRef &entry : original.registryEntries()) {
        TavRegistryEntry &copy = *copies.value(entry.get());
        EntryRecord facts = factsWithoutLinks(*entry);
        facts.childrenInPlanes = ::copyOf(entry->facts().childrenInPlanes, copies);
        facts.parentsInPlanes = ::copyOf(entry->facts().parentsInPlanes, copies);
        copy.restore(std::move(facts));
        copyProperties(*entry, copy);
    }
    return std::move(builder.store_);
}
