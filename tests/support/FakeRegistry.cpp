// SPDX-License-Identifier: Apache-2.0
#include "tests/support/FakeRegistry.h"

void FakeRegistry::addClassChain(const QStringList &mostDerivedFirst)
{
    for (qsizetype i = 0; i < mostDerivedFirst.size(); ++i) {
        if (!classes_.contains(mostDerivedFirst[i]))
            addClass(mostDerivedFirst[i], mostDerivedFirst.value(i + 1));
    }
}

FakeRegistry::Node FakeRegistry::add(const QString &className, const QByteArray &name,
                                     const QByteArray &location)
{
    Object &object = objects_.emplace_back();
    const auto node = static_cast<Node>(objects_.size());
    object.className = className;
    object.name = name;
    object.location = location;
    object.entryID = node;
    object.properties = RegistryValue::dictionary({});
    return node;
}

void FakeRegistry::remove(Node node)
{
    at(node).state |= ServiceInactive;
    for (InPlane &own : at(node).planes)
        own.children.clear();
    for (Object &parent : objects_) {
        for (InPlane &its : parent.planes)
            std::erase(its.children, node);
    }
}

const FakeRegistry::Object *FakeRegistry::withKernelPath(const QString &path) const
{
    const auto found = std::find_if(objects_.begin(), objects_.end(), [&](const Object &object) {
        return object.kernelPath == path && !(object.state & ServiceInactive);
    });
    return found == objects_.end() ? nullptr : &*found;
}

void FakeRegistry::unlink(Node parent, Node child, const QByteArray &plane)
{
    std::erase(addPlane(parent, plane).children, child);
}

void FakeRegistry::publishPlanes()
{
    RegistryValue::Members planes;
    for (const QByteArray &plane : planes_)
        planes.push_back(
            {CompactString(QString::fromLatin1(plane)), RegistryValue::number(objects_.size(), 4)});
    const auto known = at(root_).properties.members();
    RegistryValue::Members table(known.begin(), known.end());
    const CompactString key(QStringLiteral("DxRegistryPlanes"));
    std::erase_if(table, [&](const auto &member) { return member.key == key; });
    table.push_back({key, RegistryValue::dictionary(std::move(planes))});
    at(root_).properties = RegistryValue::dictionary(std::move(table));
}

void FakeRegistry::setName(Node node, const QByteArray &name, const QByteArray &plane)
{
    (plane.isNull() ? at(node).name : addPlane(node, plane).name) = name;
}

void FakeRegistry::setLocation(Node node, const QByteArray &location, const QByteArray &plane)
{
    if (plane.isNull())
        at(node).location = location;
    else
        addPlane(node, plane).location = location;
}

FakeRegistry::InPlane &FakeRegistry::addPlane(Node node, const QByteArray &plane)
{
    if (!planes_.contains(plane))
        planes_.append(plane);
    for (InPlane &own : at(node).planes) {
        if (own.plane == plane)
            return own;
    }
    InPlane &added = at(node).planes.emplace_back();
    added.plane = plane;
    return added;
}

const FakeRegistry::InPlane &FakeRegistry::inPlane(const Object &object, QByteArrayView plane)
{
    static const InPlane nothing;
    const auto found = std::find_if(object.planes.begin(), object.planes.end(),
                                    [&](const InPlane &its) { return its.plane == plane; });
    return found != object.planes.end() ? *found : nothing;
}

const QByteArray &FakeRegistry::nameIn(const Object &object, QByteArrayView plane)
{
    const QByteArray &own = inPlane(object, plane).name;
    return own.isNull() ? object.name : own;
}

const QByteArray &FakeRegistry::locationIn(const Object &object, QByteArrayView plane)
{
    const auto &own = inPlane(object, plane).location;
    return own ? *own : object.location;
}
