// SPDX-License-Identifier: Apache-2.0
#include "display/export/JsonExport.h"

#include "store/TavDataStore.h"

namespace {
using L1 = QLatin1String;
using Type = RegistryValue::Type;

constexpr int formatVersion = 1;
constexpr int exactBytes = 4; // numbers up to this size are exact in every JSON reader

L1 byteOrderName(qint32 byteOrder)
{
    switch (byteOrder) {
    case EntryStore::LittleEndian:
        return L1("little");
    case EntryStore::BigEndian:
        return L1("big");
    default:
        return L1("unknown");
    }
}

L1 stateName(RegistryState state)
{
    switch (state) {
    case RegistryStateNew:
        return L1("new");
    case RegistryStateChanged:
        return L1("changed");
    case RegistryStateTerminated:
        return L1("terminated");
    default:
        return L1("unchanged");
    }
}

QString jsonDate(const QDateTime &date)
{
    return date.toUTC().toString(Qt::ISODateWithMs);
}
} // namespace

struct JsonExport::Level
{
    const TavRegistryProperty *node;
    L1 close;
    qsizetype next = 0;
    bool isFirst = true;
};

bool JsonExport::write(const ExportedEntries &entries, QIODevice &device,
                       const ExportedEntries::Reach &reach)
{
    JsonExport writer(entries, device);
    writer.addHead();
    bool isFirst = true;
    entries.forEach(reach, [&](const ExportedEntries::Item &item) {
        if (item.isRepeated)
            return;
        writer.output_.add(isFirst ? L1("\n") : L1(",\n"));
        writer.addEntry(*item.entry);
        isFirst = false;
    });
    writer.output_.add(L1("\n]}\n"));
    return writer.output_.finish();
}

JsonExport::JsonExport(const ExportedEntries &entries, QIODevice &device)
    : entries_(entries)
    , output_(device)
{}

void JsonExport::addHead()
{
    const TavDataStore &store = entries_.store();
    output_.add(L1("{\"format\":\"vandrel-export\""));
    addCount(L1("version"), formatVersion);
    addText(L1("host"), store.hostName());
    addText(L1("architecture"), store.archName());
    addText(L1("byteOrder"), byteOrderName(store.byteOrder()));
    addDate(L1("lastUpdate"), store.lastUpdateDate());
    addFlag(L1("isUpToDate"), store.isUpToDate());
    addText(L1("plane"), entries_.plane());
    addTexts(L1("planes"), store.registryPlanes());
    addKey(L1("entries"));
    output_.add('[');
}

void JsonExport::addEntry(const TavRegistryEntry &entry)
{
    const EntryRecord &facts = entry.facts();
    output_.add(L1("{\"id\":\""));
    output_.addNumber(facts.entryTag);
    output_.add('"');
    addText(L1("name"), facts.name);
    addText(L1("location"), facts.location);
    addNames(L1("names"), facts.namesInPlanes, facts.name);
    addNames(L1("locations"), facts.locationsInPlanes, facts.location);
    addFacts(entry);
    addRelatives(L1("parents"), facts.parentsInPlanes);
    addRelatives(L1("children"), facts.childrenInPlanes);
    if (const PropertyRef tree = entry.copyOfProperties(TavRegistryProperty::staticPropertyClass()))
        addProperties(*tree);
    output_.add('}');
}

void JsonExport::addFacts(const TavRegistryEntry &entry)
{
    const EntryRecord &facts = entry.facts();
    addTexts(L1("inheritance"), facts.inheritance);
    addText(L1("bundle"), facts.bundleID);
    if (const DeviceName *const device = entry.deviceName())
        addText(L1("device"), device->description());
    if (facts.kernelPath.size() > 0)
        addText(L1("kernelPath"), entry.kernelPath());
    addText(L1("state"), stateName(facts.registryState));
    addFlag(L1("isRoot"), entry.isRegistryRoot());
    addFlag(L1("isService"), entry.conformsToDxService());
    addFlag(L1("isRegistered"), entry.isRegistered());
    addFlag(L1("isMatched"), entry.isMatched());
    addFlag(L1("isActive"), entry.isActive());
    addCount(L1("busyCount"), facts.busyCount);
    addCount(L1("retainCount"), facts.kernelRetainCount);
    addDate(L1("discovered"), facts.dateDiscovered);
    addDate(L1("lastUpdated"), facts.dateLastUpdated);
    addDate(L1("terminated"), facts.dateTerminated);
}

// Only those that differ: most entries have one name in all planes.
void JsonExport::addNames(L1 key, const NamesByPlane &names, const QString &common)
{
    bool isOpen = false;
    for (std::size_t i = 0; i < names.size(); ++i) {
        const QString name = names.name(i).toOwner();
        if (name == common && !common.isNull())
            continue;
        if (!isOpen)
            addKey(key);
        output_.add(isOpen ? ',' : '{');
        isOpen = true;
        output_.addJson(names.plane(i));
        output_.add(':');
        output_.addJson(name);
    }
    if (isOpen)
        output_.add('}');
}

void JsonExport::addRelatives(L1 key, const PlaneMap<EntryList> &relatives)
{
    bool isOpen = false;
    for (const auto &item : relatives) {
        if (item.value.entries().empty())
            continue;
        if (!isOpen)
            addKey(key);
        output_.add(isOpen ? ',' : '{');
        isOpen = true;
        output_.addJson(item.plane());
        L1 before(":[\"");
        for (const TavRegistryEntry *relative : item.value.entries()) {
            output_.add(before);
            output_.addNumber(relative->entryTag());
            before = L1("\",\"");
        }
        output_.add(L1("\"]"));
    }
    if (isOpen)
        output_.add('}');
}

// Without recursion: a snapshot's properties may be nested deeply.
void JsonExport::addProperties(const TavRegistryProperty &root)
{
    addKey(L1("properties"));
    Levels levels;
    open(root, levels);
    while (!levels.empty()) {
        if (levels.back().next < levels.back().node->numberOfChildren()) {
            addChild(levels.back(), levels);
            continue;
        }
        output_.add(levels.back().close);
        levels.pop_back();
    }
}

void JsonExport::open(const TavRegistryProperty &node, Levels &levels)
{
    if (!node.isCollection())
        return addScalar(node);
    switch (node.valueType()) {
    case Type::Dictionary:
        output_.add('{');
        return levels.push_back({&node, L1("}")});
    case Type::Set:
        output_.add(L1("{\"$set\":["));
        return levels.push_back({&node, L1("]}")});
    default:
        output_.add('[');
        return levels.push_back({&node, L1("]")});
    }
}

void JsonExport::addChild(Level &level, Levels &levels)
{
    const TavRegistryProperty &child = *level.node->childAtIndex(level.next++);
    if (child.registryState() == RegistryStateTerminated)
        return;
    if (!std::exchange(level.isFirst, false))
        output_.add(',');
    if (level.node->valueType() == Type::Dictionary) {
        const QStringView key = child.nameView();
        // A key that looks like the mark of a type gets another dollar sign.
        output_.addJson(key.startsWith(u'$') ? QString(u'$' + key.toString()) : key);
        output_.add(':');
    }
    open(child, levels);
}

void JsonExport::addScalar(const TavRegistryProperty &node)
{
    if (const QStringView text = node.stringView(); !text.isNull())
        return output_.addJson(text);
    const RegistryValue value = node.value();
    switch (value.type()) {
    case Type::String:
        return output_.addJson({});
    case Type::Number:
        return addNumber(value);
    case Type::Boolean:
        return output_.add(value.toBoolean() ? L1("true") : L1("false"));
    case Type::Data:
        output_.add(L1("{\"$data\":\""));
        output_.addBase64(value.toData());
        return output_.add(L1("\"}"));
    case Type::Date:
        output_.add(L1("{\"$date\":"));
        output_.addJson(jsonDate(value.toDate()));
        return output_.add('}');
    default:
        return output_.add(L1("null"));
    }
}

void JsonExport::addNumber(const RegistryValue &number)
{
    const bool isQuoted = number.numberWidth() > exactBytes;
    output_.add(isQuoted ? L1("{\"$number\":\"") : L1("{\"$number\":"));
    if (number.isSignedNumber())
        output_.addNumber(number.signedNumber());
    else
        output_.addNumber(number.numberBits());
    output_.add(isQuoted ? L1("\",\"bytes\":") : L1(",\"bytes\":"));
    output_.addNumber(static_cast<quint64>(number.numberWidth()));
    if (number.isSignedNumber())
        output_.add(L1(",\"signed\":true"));
    if (number.notation() == RegistryValue::Notation::Decimal)
        output_.add(L1(",\"written\":\"decimal\""));
    else if (number.notation() == RegistryValue::Notation::Hexadecimal)
        output_.add(L1(",\"written\":\"hexadecimal\""));
    output_.add('}');
}

void JsonExport::addKey(L1 key)
{
    output_.add(L1(",\""));
    output_.add(key);
    output_.add(L1("\":"));
}

void JsonExport::addText(L1 key, const QString &text)
{
    if (text.isNull())
        return;
    addKey(key);
    output_.addJson(text);
}

void JsonExport::addTexts(L1 key, const QStringList &texts)
{
    addKey(key);
    output_.add('[');
    for (qsizetype i = 0; i < texts.size(); ++i) {
        if (i > 0)
            output_.add(',');
        output_.addJson(texts[i]);
    }
    output_.add(']');
}

void JsonExport::addFlag(L1 key, bool flag)
{
    addKey(key);
    output_.add(flag ? L1("true") : L1("false"));
}

void JsonExport::addCount(L1 key, quint64 count)
{
    addKey(key);
    output_.addNumber(count);
}

void JsonExport::addDate(L1 key, const QDateTime &date)
{
    if (!date.isNull())
        addText(key, jsonDate(date));
}
