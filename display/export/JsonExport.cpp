// SPDX-License-Identifier: Apache-2.0
#include "display/export/JsonExport.h"

#include "store/TavDataStore.h"
#include "store/filter/PropertyLookup.h"

namespace {
using L1 = QLatin1String;

constexpr int formatVersion = 1;

QString byteOrderName(qint32 byteOrder)
{
    switch (byteOrder) {
    case EntryStore::LittleEndian:
        return QStringLiteral("little");
    case EntryStore::BigEndian:
        return QStringLiteral("big");
    default:
        return QStringLiteral("unknown");
    }
}

QString stateName(RegistryState state)
{
    switch (state) {
    case RegistryStateNew:
        return QStringLiteral("new");
    case RegistryStateChanged:
        return QStringLiteral("changed");
    case RegistryStateTerminated:
        return QStringLiteral("terminated");
    default:
        return QStringLiteral("unchanged");
    }
}
} // namespace

bool JsonExport::write(const ExportedEntries &entries, QIODevice &device,
                       const ExportedEntries::Reach &reach)
{
    JsonWriter json(device);
    json.beginObject();
    addHead(json, entries);
    json.key(L1("entries"));
    json.beginArray();
    entries.forEach(reach, [&](const ExportedEntries::Item &item) {
        if (item.isRepeated)
            return;
        json.startLine();
        json.beginObject();
        addEntry(json, *item.entry);
        json.endObject();
    });
    json.startLine();
    json.endArray();
    json.endObject();
    json.endDocument();
    return json.finish();
}

void JsonExport::addHead(JsonWriter &json, const ExportedEntries &entries)
{
    const TavDataStore &store = entries.store();
    json.member(L1("format"), QStringLiteral("vandrel-export"));
    json.numberMember(L1("version"), formatVersion);
    json.member(L1("host"), store.hostName());
    json.member(L1("architecture"), store.archName());
    json.member(L1("byteOrder"), byteOrderName(store.byteOrder()));
    json.member(L1("lastUpdate"), store.lastUpdateDate());
    json.flagMember(L1("isUpToDate"), store.isUpToDate());
    json.member(L1("plane"), entries.plane());
    json.member(L1("planes"), store.registryPlanes());
}

void JsonExport::addEntry(JsonWriter &json, const TavRegistryEntry &entry)
{
    const EntryRecord &facts = entry.facts();
    json.member(L1("id"), QString::number(facts.entryTag));
    json.member(L1("name"), facts.name);
    json.member(L1("location"), facts.location);
    addNames(json, L1("names"), facts.namesInPlanes, facts.name);
    addNames(json, L1("locations"), facts.locationsInPlanes, facts.location);
    addFacts(json, entry);
    addRelatives(json, L1("parents"), facts.parentsInPlanes);
    addRelatives(json, L1("children"), facts.childrenInPlanes);
    RegistryValue made;
    const RegistryValue &table = PropertyLookup::tableOf(entry, made);
    if (table.isNone())
        return;
    json.key(L1("properties"));
    json.value(table);
}

void JsonExport::addFacts(JsonWriter &json, const TavRegistryEntry &entry)
{
    const EntryRecord &facts = entry.facts();
    json.member(L1("inheritance"), facts.inheritance);
    json.member(L1("bundle"), facts.bundleID);
    if (const DeviceName *const device = entry.deviceName())
        json.member(L1("device"), device->description());
    if (facts.kernelPath.size() > 0)
        json.member(L1("kernelPath"), entry.kernelPath());
    json.member(L1("state"), stateName(facts.registryState));
    json.flagMember(L1("isRoot"), entry.isRegistryRoot());
    json.flagMember(L1("isService"), entry.conformsToDxService());
    json.flagMember(L1("isRegistered"), entry.isRegistered());
    json.flagMember(L1("isMatched"), entry.isMatched());
    json.flagMember(L1("isActive"), entry.isActive());
    json.numberMember(L1("busyCount"), facts.busyCount);
    json.numberMember(L1("retainCount"), facts.kernelRetainCount);
    json.member(L1("discovered"), facts.dateDiscovered);
    json.member(L1("lastUpdated"), facts.dateLastUpdated);
    json.member(L1("terminated"), facts.dateTerminated);
}

// Only those that differ: most entries have one name in all planes.
void JsonExport::addNames(JsonWriter &json, L1 key, const NamesByPlane &names,
                          const QString &common)
{
    bool isOpen = false;
    for (std::size_t i = 0; i < names.size(); ++i) {
        const QString name = names.name(i).toOwner();
        if (name == common && !common.isNull())
            continue;
        if (!std::exchange(isOpen, true)) {
            json.key(key);
            json.beginObject();
        }
        json.key(names.plane(i));
        json.text(name);
    }
    if (isOpen)
        json.endObject();
}

void JsonExport::addRelatives(JsonWriter &json, L1 key, const PlaneMap<EntryList> &relatives)
{
    bool isOpen = false;
    for (const auto &item : relatives) {
        if (item.value.entries().empty())
            continue;
        if (!std::exchange(isOpen, true)) {
            json.key(key);
            json.beginObject();
        }
        json.key(item.plane());
        json.beginArray();
        for (const TavRegistryEntry *relative : item.value.entries())
            json.text(QString::number(relative->entryTag()));
        json.endArray();
    }
    if (isOpen)
        json.endObject();
}
