// SPDX-License-Identifier: Apache-2.0
#include "store/redaction/RedactedStore.h"

#include "store/StoreBuilder.h"

namespace {
constexpr double learningPart = 0.5;
constexpr std::size_t betweenReports = 64;

const QString subsystemKey = QStringLiteral("subsystem");

QString subsystemOf(const TavRegistryEntry &entry)
{
    if (!entry.table().isNone())
        return Redactor::subsystemOf(entry.table().member(subsystemKey));
    const TavRegistryProperty *const tree = entry.properties();
    const TavRegistryProperty *const link = tree ? tree->childWithName(subsystemKey) : nullptr;
    return link ? Redactor::subsystemOf(link->value()) : QString();
}

// The key of each node: its own or, for elements, that of the collection.
std::vector<QString> keysOf(const std::vector<PropertyRecord> &nodes)
{
    std::vector<QString> keys(nodes.size());
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        if (nodes[i].hasName && nodes[i].name.size() > 0)
            keys[i] = Redactor::keyOfMember(keys[i], nodes[i].name.toOwner());
        for (std::size_t child = 0; child < nodes[i].childCount; ++child)
            keys[nodes[i].firstChild + child] = keys[i];
    }
    return keys;
}

template<class Action>
void forEachEntry(const TavDataStore &store, double from, double part,
                  const RedactedStore::Reach &reach, Action action)
{
    const auto &entries = store.registryEntries();
    for (std::size_t i = 0; i < entries.size(); ++i) {
        if (i % betweenReports == 0)
            reach(from + part * static_cast<double>(i) / static_cast<double>(entries.size()));
        action(*entries[i]);
    }
}
} // namespace

RedactedStore::RedactedStore(const TavDataStore &original, std::shared_ptr<Redactor> redactor)
    : original_(original)
    , redactor_(std::move(redactor))
    , store_(new TavDataStore)
{}

RedactedStore::RedactedStore(const TavDataStore &original, const Reach &reach)
    : RedactedStore(original, std::make_shared<Redactor>())
{
    learnAll(0, learningPart, reach);
    redactor_->finishLearning();
    copyAll(learningPart, 1 - learningPart, reach);
}

RedactedStore::Pair RedactedStore::copiesOf(const TavDataStore &before, const TavDataStore &after,
                                            const Reach &reach)
{
    const auto redactor = std::make_shared<Redactor>();
    Pair pair{std::unique_ptr<RedactedStore>(new RedactedStore(before, redactor)),
              std::unique_ptr<RedactedStore>(new RedactedStore(after, redactor))};
    constexpr double step = 0.25;
    pair.before->learnAll(0, step, reach);
    pair.after->learnAll(step, step, reach);
    redactor->finishLearning();
    pair.before->copyAll(2 * step, step, reach);
    pair.after->copyAll(3 * step, step, reach);
    return pair;
}

void RedactedStore::learnAll(double from, double part, const Reach &reach)
{
    redactor_->learnHost(original_.hostName());
    forEachEntry(original_, from, part, reach,
                 [this](const TavRegistryEntry &entry) { learn(entry); });
}

void RedactedStore::copyAll(double from, double part, const Reach &reach)
{
    store_->hostName_ = redactor_->host(original_.hostName());
    store_->archName_ = original_.archName();
    store_->byteOrder_ = original_.byteOrder();
    store_->isUpToDate_ = original_.isUpToDate();
    store_->lastUpdateDate_ = original_.lastUpdateDate();
    store_->registryPlanes_ = original_.registryPlanes();
    makeEntries();
    forEachEntry(original_, from, part, reach, [this](const TavRegistryEntry &entry) {
        copyProperties(entry, *copies_[&entry]);
    });
}

void RedactedStore::learn(const TavRegistryEntry &entry)
{
    const EntryRecord &facts = entry.facts();
    redactor_->learnName(facts.name);
    redactor_->learnName(facts.location);
    redactor_->learnName(entry.kernelPath());
    for (const NamesByPlane *names : {&facts.namesInPlanes, &facts.locationsInPlanes}) {
        for (std::size_t i = 0; i < names->size(); ++i)
            redactor_->learnName(names->name(i).toOwner());
    }
    const QString subsystem = subsystemOf(entry);
    if (!entry.table().isNone())
        redactor_->learn({}, subsystem, entry.table());
    else if (const TavRegistryProperty *const tree = entry.properties())
        learnTree(*tree, subsystem);
}

void RedactedStore::learnTree(const TavRegistryProperty &root, const QString &subsystem)
{
    const std::vector<PropertyRecord> nodes = propertyRecords(root);
    const std::vector<QString> keys = keysOf(nodes);
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        if (nodes[i].hasName) // the key itself may have a private part
            redactor_->learn({}, subsystem, RegistryValue::string(nodes[i].name.toOwner()));
        redactor_->learn(keys[i], subsystem, nodes[i].value);
    }
}

// All of them before any is filled, since they refer to each other.
void RedactedStore::makeEntries()
{
    for (const EntryRef &entry : original_.registryEntries()) {
        EntryRef copy = TavRegistryEntry::createEmpty();
        copy->_setDataStore(store_.get());
        copy->setDeviceName(entry->deviceNameRef());
        copies_.insert(entry.get(), copy.get());
        store_->registryEntries_.push_back(std::move(copy));
    }
    for (const EntryRef &entry : original_.registryEntries())
        copies_[entry.get()]->restore(factsOf(*entry));
    // Sorted by the new names, which all entries have now.
    for (const EntryRef &entry : original_.registryEntries()) {
        EntryRecord facts = factsOf(*entry);
        copyRelatives(facts.childrenInPlanes, entry->facts().childrenInPlanes);
        copyRelatives(facts.parentsInPlanes, entry->facts().parentsInPlanes);
        copies_[entry.get()]->restore(std::move(facts));
    }
}

EntryRecord RedactedStore::factsOf(const TavRegistryEntry &entry) const
{
    EntryRecord facts = StoreBuilder::factsWithoutLinks(entry);
    facts.name = redactor_->text(facts.name);
    facts.location = redactor_->text(facts.location);
    facts.kernelPath = CompactString(redactor_->text(entry.kernelPath()));
    facts.namesInPlanes = namesOf(entry.facts().namesInPlanes);
    facts.locationsInPlanes = namesOf(entry.facts().locationsInPlanes);
    return facts;
}

NamesByPlane RedactedStore::namesOf(const NamesByPlane &names) const
{
    NamesByPlane::Strings planes;
    NamesByPlane::Strings texts;
    for (std::size_t i = 0; i < names.size(); ++i) {
        planes.emplace_back(names.plane(i));
        texts.emplace_back(redactor_->text(names.name(i).toOwner()));
    }
    NamesByPlane copy;
    copy.assign(std::move(planes), texts);
    return copy;
}

void RedactedStore::copyRelatives(PlaneMap<EntryList> &copy,
                                  const PlaneMap<EntryList> &original) const
{
    copy.reserve(original.size());
    for (const auto &item : original) {
        EntryList::Entries relatives;
        bool isRenamed = false;
        for (const TavRegistryEntry *relative : item.value.entries()) {
            TavRegistryEntry *const own = copies_.value(relative);
            if (!own) // it has left the store
                continue;
            relatives.push_back(own);
            isRenamed = isRenamed || own->nameAtLocationInPlane(item.plane()) !=
                                         relative->nameAtLocationInPlane(item.plane());
        }
        if (isRenamed)
            TavRegistryEntry::sortForPlane(relatives, item.plane());
        copy[item.plane()].setOrder(std::move(relatives));
    }
}

void RedactedStore::copyProperties(const TavRegistryEntry &entry, TavRegistryEntry &copy) const
{
    if (!entry.hasProperties())
        return;
    if (entry.table().isNone()) {
        copy.setTree(TavRegistryProperty::restore(TavRegistryEntry::currentPropertyClass(),
                                                  copy.shared_from_this(), nodesOf(entry)));
        return;
    }
    const RegistryValue table = redactor_->value({}, subsystemOf(entry), entry.table());
    copy.setTable(table.sharingWith(entry.table()), entry.dateRead());
}

std::vector<PropertyRecord> RedactedStore::nodesOf(const TavRegistryEntry &entry) const
{
    std::vector<PropertyRecord> nodes = propertyRecords(*entry.properties());
    const QString subsystem = subsystemOf(entry);
    const std::vector<QString> keys = keysOf(nodes);
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        PropertyRecord &node = nodes[i];
        if (node.hasName)
            node.name = CompactString(redactor_->text(node.name.toOwner()));
        if (!node.isCollection) {
            node.value = redactor_->value(keys[i], subsystem, node.value);
            if (node.type != RegistryValue::Type::None) // that of a terminated copy
                node.type = node.value.type();
        }
    }
    return nodes;
}
