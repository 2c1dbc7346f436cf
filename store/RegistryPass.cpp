// SPDX-License-Identifier: Apache-2.0
#include "store/RegistryPass.h"

void RegistryPass::run(RegistryService &service, const std::vector<EntryRef> &entries,
                       const QStringList &planes)
{
    const bool canCompare = lastReading_ != 0 && planes == planes_;
    const Entries changed = canCompare ? changedEntries(service, entries) : entries;
    if (changed.size() > entries.size() / 2)
        readAll(entries); // cheaper per entry
    else
        readChanged(changed, entries);
    noteOutOfOrder(entries);
    lastReading_ = service.readingNumber();
    lastCount_ = entries.size();
    planes_ = planes;
}

void RegistryPass::noteDropped(std::size_t countBefore, std::size_t countAfter)
{
    if (countBefore == lastCount_)
        lastCount_ = countAfter;
    else
        forget(); // it is unknown which entries have been read
}

void RegistryPass::readAll(const Entries &entries)
{
    for (const EntryRef &entry : entries)
        entry->clearParentChildRelationships();
    // Reading children appends new entries, which are read in the same pass.
    for (std::size_t i = 0; i < entries.size(); ++i)
        entries[i]->updateIsSingle(false);
}

void RegistryPass::readChanged(const Entries &changed, const Entries &entries)
{
    const std::size_t countBefore = entries.size();
    EntrySet parents;
    EntrySet affected; // their parents may have changed
    const auto read = [&affected](TavRegistryEntry &entry) {
        entry.updateIsSingle(false);
        entry.addAllChildrenTo(affected);
    };
    for (const EntryRef &entry : changed) {
        parents.insert(entry.get());
        entry->addAllChildrenTo(affected);
    }
    for (TavRegistryEntry *const child : std::as_const(affected))
        child->forgetParents(parents);
    for (const EntryRef &entry : changed)
        read(*entry);
    for (std::size_t i = countBefore; i < entries.size(); ++i)
        read(*entries[i]);
    orderParents(affected, entries);
}

// Vanished objects count as changed: their children must lose them.
RegistryPass::Entries RegistryPass::changedEntries(RegistryService &service,
                                                   const Entries &entries) const
{
    const QDateTime now = QDateTime::currentDateTimeUtc();
    Entries changed;
    for (std::size_t i = 0; i < entries.size(); ++i) {
        TavRegistryEntry &entry = *entries[i];
        const RegistryObject object = entry.DxRegistryEntry();
        if (i < lastCount_ && object && !outOfOrder_.contains(&entry) &&
            service.isUnchangedSince(object, lastReading_))
            entry.noteUnchanged(now);
        else
            changed.push_back(entries[i]);
    }
    return changed;
}

// The next pass rereads these, changed or not.
void RegistryPass::noteOutOfOrder(const Entries &entries)
{
    EntrySet parents;
    for (const EntryRef &entry : entries) {
        if (entry->takeIsRenamed())
            entry->addAllParentsTo(parents);
    }
    outOfOrder_.clear();
    for (TavRegistryEntry *const parent : std::as_const(parents)) {
        if (!parent->areChildrenInOrder())
            outOfOrder_.insert(parent);
    }
}

void RegistryPass::orderParents(const EntrySet &children, const Entries &entries)
{
    QHash<const TavRegistryEntry *, std::size_t> places;
    const auto place = [&](const TavRegistryEntry *entry) {
        if (places.isEmpty()) {
            places.reserve(static_cast<qsizetype>(entries.size()));
            for (std::size_t i = 0; i < entries.size(); ++i)
                places.insert(entries[i].get(), i);
        }
        return places.value(entry);
    };
    const auto isBefore = [&](TavRegistryEntry *a, TavRegistryEntry *b) {
        return place(a) < place(b);
    };
    for (TavRegistryEntry *const child : children)
        child->orderParents(isBefore);
}
