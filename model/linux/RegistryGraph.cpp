// SPDX-License-Identifier: Apache-2.0
#include "model/linux/RegistryGraph.h"

#include "model/linux/ObjectNames.h"
#include "model/linux/PlaneEdges.h"
#include "model/linux/RequestedAttributes.h"
#include "model/linux/UdevDatabase.h"
#include "model/linux/UnreachableEntries.h"

#include <QMap>
#include <QRandomGenerator>
#include <cassert>

namespace {
using Kind = RawObject::Kind;

constexpr QLatin1String unreadAttributes("DxUnreadAttributes");

// Keeps the members sorted by key.
void insertMember(RegistryValue::Members &members, QLatin1String key, RegistryValue value)
{
    const QString text(key);
    const auto place = std::lower_bound(
        members.begin(), members.end(), text,
        [](const auto &member, const QString &wanted) { return member.key.toOwner() < wanted; });
    members.insert(place, {CompactString(text), std::move(value)});
}

RegistryValue arrayOf(const QStringList &texts)
{
    RegistryValue::Elements elements;
    for (const QString &text : texts)
        elements.push_back(RegistryValue::string(text));
    return RegistryValue::array(std::move(elements));
}

// Reasons by attribute, each attribute once. Attributes without a reason have been read on request.
RegistryValue::Members reasonsOf(const std::vector<RawObject::Unread> &unread)
{
    QMap<QString, QString> reasons;
    for (const RawObject::Unread &its : unread) {
        if (!its.reason.isEmpty())
            reasons.insert(QString::fromUtf8(its.path), QString::fromUtf8(its.reason));
    }
    RegistryValue::Members members;
    for (auto it = reasons.cbegin(); it != reasons.cend(); ++it)
        members.push_back({CompactString(it.key()), RegistryValue::string(it.value())});
    return members;
}

quint32 ownBusyCount(const HostObject &object, const UdevDatabase &udev)
{
    const QString status = object.member(u"power").member(u"runtime_status").toString();
    quint32 count = object.member(u"waiting_for_supplier").numberBits() == 1;
    count += status == QLatin1String("suspending") || status == QLatin1String("resuming");
    count += udev.isDaemonRunning() && !object.isAnnounced;
    return count;
}
} // namespace

RegistryGraph::RegistryGraph(ObjectTable objects, UdevDatabase &udev, ReadingDetail detail)
    : objects_(std::move(objects))
{
    const PlaneEdges edges = planeEdges(objects_);
    arrange(edges);
    addPlaneCounts(edges);
    for (std::size_t i = 0; i < planeCount; ++i)
        distinguishSiblings(static_cast<Plane>(i));
    listIncompleteObjects();
    byID_.reserve(objects_.count());
    for (int i = 0; i < objects_.count(); ++i) {
        byID_.insert(at(i).id, i);
        finish(objects_.at(i), udev, detail);
    }
    countBusyChildren();
    assert(unreachableEntries(*this).isEmpty());
}

int RegistryGraph::withID(quint64 id) const
{
    return byID_.value(id, HostObject::none);
}

void RegistryGraph::setID(int index, quint64 id)
{
    HostObject &object = objects_.at(index);
    if (object.id == id)
        return;
    byID_.remove(object.id);
    object.id = id;
    byID_.insert(id, index);
}

bool RegistryGraph::hasPlane(Plane plane) const
{
    return !children(plane).all.empty();
}

std::span<const int> RegistryGraph::childrenInPlane(int index, Plane plane) const
{
    const Children &its = children(plane);
    if (its.all.empty())
        return {};
    const auto at = static_cast<std::size_t>(index);
    const auto begin = static_cast<std::size_t>(its.first[at]);
    return std::span(its.all).subspan(begin, static_cast<std::size_t>(its.first[at + 1]) - begin);
}

RegistryGraph::Memory RegistryGraph::compareWith(const Memory &earlier, quint64 reading)
{
    reading_ = reading;
    Memory memory;
    memory.reserve(count());
    for (int i = 0; i < count(); ++i) {
        HostObject &object = objects_.at(i);
        const auto digest = this->digest(i);
        object.changedIn = reading;
        if (const auto known = earlier.constFind(object.nodeID); known != earlier.constEnd()) {
            object.properties = object.properties.sharingWith(known->properties);
            if (object.properties.isSameCollectionAs(known->properties) && digest == known->digest)
                object.changedIn = known->changedIn;
        }
        memory.insert(object.nodeID, {object.properties, digest, object.changedIn});
    }
    return memory;
}

std::array<size_t, 2> RegistryGraph::digest(int index) const
{
    // Two hashes with secret seeds: no two texts collide in both.
    static const std::array<size_t, 2> seeds{QRandomGenerator::system()->generate64(),
                                             QRandomGenerator::system()->generate64()};
    const HostObject &object = at(index);
    QByteArray facts;
    const auto addNumber = [&facts](quint64 number) {
        facts.append(reinterpret_cast<const char *>(&number), sizeof number);
    };
    const auto addName = [&](const NameAndLocation &its) {
        addNumber(static_cast<quint64>(its.name.size()));
        facts += its.name;
        addNumber(its.location.isNull() ? 0 : static_cast<quint64>(its.location.size()) + 1);
        facts += its.location;
    };
    addName(object.name);
    for (const auto &[plane, name] : object.namesInPlanes) {
        addNumber(static_cast<quint64>(plane));
        addName(name);
    }
    addNumber(object.retainCount);
    addNumber(object.busyCount());
    addNumber(object.isAnnounced + 2U * (object.binding != HostObject::none) + 4U * object.isOnBus +
              8U * object.subsystem.isEmpty());
    for (std::size_t i = 0; i < planeCount; ++i) {
        const auto children = childrenInPlane(index, static_cast<Plane>(i));
        addNumber(children.size());
        for (const int child : children)
            addNumber(at(child).nodeID);
    }
    return {qHash(facts, seeds[0]), qHash(facts, seeds[1])};
}

void RegistryGraph::noteAllChanged(Memory &memory)
{
    for (int i = 0; i < count(); ++i)
        objects_.at(i).changedIn = reading_;
    for (Remembered &object : memory)
        object.changedIn = reading_;
}

void RegistryGraph::arrange(const PlaneEdges &edges)
{
    for (std::size_t i = 0; i < planeCount; ++i) {
        if (edges[i].empty())
            continue;
        std::vector<int> &first = planes_[i].first;
        first.resize(static_cast<std::size_t>(objects_.count()) + 1);
        for (const auto &[parent, child] : edges[i]) {
            ++first[static_cast<std::size_t>(parent) + 1];
            planes_[i].all.push_back(child);
        }
        for (std::size_t j = 1; j < first.size(); ++j)
            first[j] += first[j - 1];
    }
}

void RegistryGraph::addPlaneCounts(const PlaneEdges &edges)
{
    RegistryValue::Members counts;
    for (std::size_t i = 0; i < planeCount; ++i) {
        QSet<int> entries;
        for (const auto &[parent, child] : edges[i])
            entries.insert(child);
        const auto count = static_cast<quint64>(entries.size()) + 1; // the root is not a child
        if (!entries.isEmpty())
            insertMember(counts, QLatin1String(planeNames[i]),
                         RegistryValue::number(count, 4, false, RegistryValue::Notation::Decimal));
    }
    insertMember(objects_.at(ObjectTable::root).members, QLatin1String("DxRegistryPlanes"),
                 RegistryValue::dictionary(std::move(counts)));
}

std::vector<int> RegistryGraph::siblingsWithEqualNames(Plane plane) const
{
    std::vector<int> alike;
    for (int parent = 0; parent < objects_.count(); ++parent) {
        const auto siblings = childrenInPlane(parent, plane);
        if (siblings.size() < 2)
            continue;
        QHash<std::pair<QByteArray, QByteArray>, int> firstOfName;
        for (const int child : siblings) {
            const NameAndLocation &its = at(child).nameInPlane(plane);
            const auto name = std::pair(its.name, its.location);
            const auto known = firstOfName.constFind(name);
            if (known == firstOfName.constEnd()) {
                firstOfName.insert(name, child);
            } else {
                alike.push_back(child);
                alike.push_back(*known);
            }
        }
    }
    std::sort(alike.begin(), alike.end());
    alike.erase(std::unique(alike.begin(), alike.end()), alike.end());
    return alike;
}

void RegistryGraph::distinguishSiblings(Plane plane)
{
    const auto relocate = [this, plane](int index, const QByteArray &location) {
        HostObject &object = objects_.at(index);
        const QByteArray name = object.nameInPlane(plane).name;
        std::erase_if(object.namesInPlanes, [&](const auto &its) { return its.first == plane; });
        object.namesInPlanes.push_back({plane, {name, location}});
    };
    constexpr qsizetype maxLocationSize = 100; // leaves room for the ID
    for (const int index : siblingsWithEqualNames(plane))
        relocate(index, ObjectNames::validUtf8(at(index).kernelName, maxLocationSize));
    // Kernel names can be equal, too, in different folders.
    for (const int index : siblingsWithEqualNames(plane))
        relocate(index, ObjectNames::validUtf8(at(index).kernelName, maxLocationSize) + '#' +
                            QByteArray::number(at(index).id));
}

void RegistryGraph::finish(HostObject &object, UdevDatabase &udev, ReadingDetail detail)
{
    if (object.kind == Kind::Device) {
        const bool isExpected = UdevDatabase::expectsRecord(object);
        const bool isRead = detail == ReadingDetail::Everything || isExpected;
        object.isAnnounced = (isRead && insertRecord(object, udev)) || !isExpected;
        object.ownBusyCount = ::ownBusyCount(object, udev);
        object.isAnnounced = object.isAnnounced || !udev.isDaemonRunning();
    }
    complete(object);
}

// False without a record.
bool RegistryGraph::insertRecord(HostObject &object, UdevDatabase &udev)
{
    RegistryValue record = udev.record(object);
    if (record.isNone())
        return false;
    insertMember(object.members, QLatin1String("udev"), std::move(record));
    return true;
}

// States stay as they were read.
void RegistryGraph::addWhole(int index, RawObject read, const RequestedAttributes &requested,
                             UdevDatabase &udev)
{
    HostObject &object = objects_.at(index);
    object.members = std::move(read.members);
    object.unread = std::move(read.unread);
    requested.addTo(object);
    if (object.kind == Kind::Device)
        insertRecord(object, udev);
    complete(object);
}

// What is not read of the object's own directory.
void RegistryGraph::complete(HostObject &object)
{
    insertReasons(object);
    if (!object.refusedParents.isEmpty())
        insertMember(object.members, QLatin1String("DxRefusedParents"),
                     arrayOf(object.refusedParents));
    object.properties = RegistryValue::dictionary(std::exchange(object.members, {}));
}

void RegistryGraph::addRequested(int index, const RequestedAttributes &requested)
{
    HostObject &object = objects_.at(index);
    object.members.assign(object.properties.members().begin(), object.properties.members().end());
    std::erase_if(object.members, [](const RegistryValue::Member &member) {
        return member.key.toOwner() == unreadAttributes;
    });
    requested.addTo(object);
    insertReasons(object);
    object.changedIn = reading_ + 1;
    object.properties = RegistryValue::dictionary(std::exchange(object.members, {}));
}

void RegistryGraph::insertReasons(HostObject &object)
{
    RegistryValue::Members reasons = reasonsOf(object.unread);
    if (!reasons.empty())
        insertMember(object.members, unreadAttributes,
                     RegistryValue::dictionary(std::move(reasons)));
}

// Lists in the root the attributes that did not answer, by object path.
void RegistryGraph::listIncompleteObjects()
{
    QMap<QString, RegistryValue> incomplete;
    for (int i = 0; i < count(); ++i) {
        QStringList attributes;
        for (const RawObject::Unread &unread : at(i).unread) {
            if (RawObject::isUnanswered(unread.reason))
                attributes.append(QString::fromUtf8(unread.path));
        }
        if (!attributes.isEmpty())
            incomplete.insert(at(i).path.toString(), arrayOf(attributes));
    }
    RegistryValue::Members members;
    for (auto it = incomplete.cbegin(); it != incomplete.cend(); ++it)
        members.push_back({CompactString(it.key()), *it});
    if (!members.empty())
        insertMember(objects_.at(ObjectTable::root).members, QLatin1String("DxIncompleteObjects"),
                     RegistryValue::dictionary(std::move(members)));
}

void RegistryGraph::countBusyChildren()
{
    std::vector<int> order{ObjectTable::host};
    std::vector<int> parents{HostObject::none};
    for (std::size_t i = 0; i < order.size(); ++i) {
        for (const int child : childrenInPlane(order[i], Plane::Service)) {
            order.push_back(child);
            parents.push_back(order[i]);
        }
    }
    for (std::size_t i = order.size(); i-- > 1;) {
        if (at(order[i]).busyCount() > 0)
            ++objects_.at(parents[i]).busyChildren;
    }
}
