// SPDX-License-Identifier: Apache-2.0
#include "display/comparison/ComparisonJson.h"

#include "display/comparison/ComparedValue.h"
#include "display/comparison/ComparisonSummary.h"
#include "display/comparison/DifferenceRows.h"
#include "display/comparison/DifferenceWords.h"
#include "display/export/EntryFactTexts.h"
#include "display/export/JsonExport.h"

namespace {
using L1 = QLatin1String;
using Fact = EntryFactTexts::Fact;

constexpr int formatVersion = 1;
constexpr L1 sides[] = {L1("before"), L1("after")};

void addValue(JsonWriter &json, L1 key, const TavRegistryProperty *node)
{
    if (!node)
        return;
    json.key(key);
    json.value(ComparedValue::of(*node));
}
} // namespace

bool ComparisonJson::write(const ExportedDifferences &differences, QIODevice &device,
                           const Reach &reach)
{
    JsonWriter json(device);
    json.beginObject();
    json.member(L1("format"), QStringLiteral("vandrel-comparison"));
    json.numberMember(L1("version"), formatVersion);
    addSummary(json, differences);
    json.key(L1("differences"));
    json.beginArray();
    differences.forEach(reach, [&](const EntryDifference &difference) {
        json.startLine();
        json.beginObject();
        addDifference(json, differences, difference);
        json.endObject();
    });
    json.startLine();
    json.endArray();
    json.endObject();
    json.endDocument();
    return json.finish();
}

void ComparisonJson::addSummary(JsonWriter &json, const ExportedDifferences &differences)
{
    addRegistry(json, sides[0], differences.before());
    addRegistry(json, sides[1], differences.after());
    json.key(L1("counts"));
    json.beginObject();
    for (const DifferenceKind kind : DifferenceWords::kinds()) {
        json.key(DifferenceWords::identifier(kind));
        json.number(ComparisonSummary::count(differences.counts(), kind));
    }
    json.numberMember(L1("same"), differences.counts().same);
    json.endObject();
}

void ComparisonJson::addRegistry(JsonWriter &json, L1 key, const ComparedRegistry &registry)
{
    json.key(key);
    json.beginObject();
    json.member(L1("source"), registry.source());
    json.member(L1("host"), registry.host());
    json.member(L1("architecture"), registry.architecture());
    json.member(L1("kernelRelease"), registry.kernelRelease());
    json.member(L1("operatingSystem"), registry.operatingSystem());
    json.member(L1("lastUpdate"), registry.dateRead());
    json.endObject();
}

void ComparisonJson::addDifference(JsonWriter &json, const ExportedDifferences &differences,
                                   const EntryDifference &difference)
{
    const bool isPair = difference.before && difference.after;
    json.member(L1("kind"), DifferenceWords::identifier(difference.kind));
    addSide(json, sides[0], difference.before, differences.isWhole() && !isPair);
    addSide(json, sides[1], difference.after, differences.isWhole() && !isPair);
    if (!isPair)
        return;
    addFacts(json, differences, difference);
    addProperties(json, differences, difference);
}

void ComparisonJson::addSide(JsonWriter &json, L1 key, const TavRegistryEntry *entry, bool isWhole)
{
    if (!entry)
        return;
    json.key(key);
    json.beginObject();
    json.member(L1("path"), DifferenceRows::pathOf(*entry));
    if (isWhole) {
        JsonExport::addEntry(json, *entry);
    } else {
        const auto member = [&](L1 name, Fact fact) {
            const QString text = EntryFactTexts::text(fact, *entry, QStringLiteral("DxService"));
            json.member(name, text.isEmpty() ? QString() : text);
        };
        member(L1("id"), Fact::Identifier);
        member(L1("name"), Fact::Name);
        member(L1("class"), Fact::Class);
        member(L1("bundle"), Fact::Bundle);
        member(L1("device"), Fact::Device);
        member(L1("kernelPath"), Fact::KernelPath);
    }
    json.endObject();
}

void ComparisonJson::addFacts(JsonWriter &json, const ExportedDifferences &differences,
                              const EntryDifference &difference)
{
    json.key(L1("facts"));
    json.beginArray();
    for (const auto &change : differences.comparison().factChanges(difference)) {
        json.beginObject();
        json.member(L1("fact"), DifferenceWords::factIdentifier(change.fact));
        json.member(sides[0], change.before);
        json.member(sides[1], change.after);
        json.endObject();
    }
    json.endArray();
}

void ComparisonJson::addProperties(JsonWriter &json, const ExportedDifferences &differences,
                                   const EntryDifference &difference)
{
    const PropertyDifferences properties = differences.comparison().propertyDifferences(
        difference, TavRegistryProperty::staticPropertyClass());
    json.key(L1("properties"));
    json.beginArray();
    for (const auto &change : differences.changes(properties)) {
        json.beginObject();
        json.member(L1("property"), change.path);
        addValue(json, sides[0], change.before);
        addValue(json, sides[1], change.after);
        if (change.isVolatile)
            json.flagMember(L1("isVolatile"), true);
        json.endObject();
    }
    json.endArray();
}
