// SPDX-License-Identifier: Apache-2.0
#include "tests/support/SmallStore.h"

using L1 = QLatin1String;
using enum SmallStore::Position;

namespace {
ArchiveValue text(const char *text)
{
    return QString::fromLatin1(text);
}

ArchiveSketch::Object store(qint64 version)
{
    return {QStringLiteral("TavDataStore"),
            {
                {L1("dataStoreVersion"), version},
                {L1("hostName"), text("host")},
                {L1("archName"), text("x86_64")},
                {L1("byteOrder"), ArchiveNumber{1, 4, true}},
                {L1("registryEntries"), ArchiveList{SmallStore::at(Root), SmallStore::at(Child)}},
                {L1("registryPlanes"), ArchiveList{text("DxService")}},
                {L1("lastUpdateDate"), QDateTime::fromMSecsSinceEpoch(0, Qt::UTC)},
                {L1("isUpToDate"), ArchiveValue(true)},
            }};
}

// The keys common to both versions.
ArchiveSketch::Object entry(const char *name, qint64 tag)
{
    return {QStringLiteral("TavRegistryEntry"),
            {
                {L1("dateDiscovered"), QDateTime::fromMSecsSinceEpoch(0, Qt::UTC)},
                {L1("bundleID"), ArchiveValue()},
                {L1("inheritance"), ArchiveList{text("DxRoot"), text("DxRegistryEntry")}},
                {L1("name"), text(name)},
                {L1("namesInPlanes"), SmallStore::inPlane(text(name))},
                {L1("location"), ArchiveValue()},
                {L1("locationsInPlanes"), ArchiveDictionary()},
                {L1("childrenInPlanes"), ArchiveDictionary()},
                {L1("parentsInPlanes"), ArchiveDictionary()},
                {L1("entryTag"), tag},
                {L1("busyCount"), qint64(0)},
                {L1("kernelRetainCount"), qint64(1)},
                {L1("isRegistryRoot"), ArchiveValue(tag == 1)},
                {L1("conformsToDxService"), ArchiveValue(false)},
                {L1("isRegistered"), ArchiveValue(true)},
                {L1("isMatched"), ArchiveValue(false)},
                {L1("isActive"), ArchiveValue(true)},
            }};
}

ArchiveSketch::Object node(SmallStore::Position owner, const ArchiveValue &parent,
                           bool isCollection)
{
    return {QStringLiteral("TavPropertyOutlineItem"),
            {
                {L1("TavRegistryPropertyCoderVersionNumber"), qint64(2)},
                {L1("isCollection"), ArchiveValue(isCollection)},
                {L1("hasName"), ArchiveValue(false)},
                {L1("registryEntry"), SmallStore::at(owner)},
                {L1("registryState"), qint64(0)},
                {L1("parent"), parent},
            }};
}

ArchiveSketch::Object collection(SmallStore::Position owner, const ArchiveValue &parent,
                                 qint64 type, const ArchiveList &children)
{
    return node(owner, parent, true)
        .set(L1("collectionType"), type)
        .set(L1("children"), ArchiveValue(children));
}

ArchiveSketch::Object named(ArchiveSketch::Object object, const char *name)
{
    return object.set(L1("hasName"), ArchiveValue(true)).set(L1("name"), text(name));
}

ArchiveSketch sketch(qint64 version)
{
    ArchiveSketch sketch{{store(version), entry("Root", 1), entry("Child", 2)}};
    sketch.objects[Root].set(L1("childrenInPlanes"),
                             SmallStore::inPlane(ArchiveList{SmallStore::at(Child)}));
    sketch.objects[Child].set(L1("parentsInPlanes"),
                              SmallStore::inPlane(ArchiveList{SmallStore::at(Root)}));
    return sketch;
}

} // namespace

ArchiveSketch SmallStore::current()
{
    ArchiveSketch small = sketch(2);
    for (const Position position : {Root, Child}) {
        const Position table = position == Root ? RootTable : ChildTable;
        small.objects[position]
            .set(L1("TavRegistryEntryCoderVersionNumber"), qint64(2))
            .set(L1("dataStore"), ArchiveValue(at(Store)))
            .set(L1("registryState"), qint64(0))
            .set(L1("properties"), ArchiveValue(at(table)));
    }
    small.objects.push_back(collection(Root, {}, 2, {at(Text), at(List)}));
    small.objects.push_back(collection(Child, {}, 2, {}));
    small.objects.push_back(
        named(node(Root, at(RootTable), false), "text").set(L1("value"), text("value")));
    small.objects.push_back(named(collection(Root, at(RootTable), 1, {at(Element)}), "list"));
    small.objects.push_back(
        node(Root, at(List), false).set(L1("value"), ArchiveValue(ArchiveNumber{7, 4, false})));
    return small;
}

ArchiveSketch SmallStore::old()
{
    return sketch(1);
}
