#include "tests/support/FakeRegistry.h"

void FakeRegistry::addClass(const QString &name, const QString &superclass, const QString &bundleID)
{
    classes_.insert(name, {superclass, bundleID});
}

void FakeRegistry::addClassChain(const QStringList &mostDerivedFirst)
{
    for (qsizetype i = 0; i < mostDerivedFirst.size(); ++i) {
        if (!classes_.contains(mostDerivedFirst[i]))
            addClass(mostDerivedFirst[i], mostDerivedFirst.value(i + 1));
    }
}

const FakeRegistry::Class &FakeRegistry::classNamed(const QString &name) const
{
    static const Class unknown;
    const auto found = classes_.constFind(name);
    return found != classes_.constEnd() ? *found : unknown;
}

void FakeRegistry::setBundlePath(const QString &bundleID, const QString &path)
{
    bundlePaths_.insert(bundleID, path);
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
    at(node).children.clear();
    for (Object &parent : objects_) {
        for (Children &children : parent.children)
            std::erase(children.nodes, node);
    }
}

void FakeRegistry::link(Node parent, Node child, const QByteArray &plane)
{
    addChildren(parent, plane).push_back(child);
}

void FakeRegistry::unlink(Node parent, Node child, const QByteArray &plane)
{
    std::erase(addChildren(parent, plane), child);
}

void FakeRegistry::publishPlanes()
{
    RegistryValue::Members planes;
    for (const QByteArray &plane : planes_)
        planes.push_back(
            {CompactString(QString::fromLatin1(plane)), RegistryValue::number(objects_.size(), 4)});
    RegistryValue::Members table = at(root_).properties.members();
    const CompactString key(QStringLiteral("DxRegistryPlanes"));
    std::erase_if(table, [&](const auto &member) { return member.key == key; });
    table.push_back({key, RegistryValue::dictionary(std::move(planes))});
    at(root_).properties = RegistryValue::dictionary(std::move(table));
}

void FakeRegistry::setName(Node node, const QByteArray &name, const QByteArray &plane)
{
    (plane.isNull() ? at(node).name : addTexts(node, plane).name) = name;
}

void FakeRegistry::setLocation(Node node, const QByteArray &location, const QByteArray &plane)
{
    if (plane.isNull()) {
        at(node).location = location;
        return;
    }
    PlaneTexts &texts = addTexts(node, plane);
    texts.location = location;
    texts.hasOwnLocation = true;
}

void FakeRegistry::setProperties(Node node, const RegistryValue &properties)
{
    at(node).properties = properties;
}

FakeRegistry::PlaneIndex FakeRegistry::planeIndex(QByteArrayView plane) const
{
    const auto found = std::find(planes_.begin(), planes_.end(), plane);
    return static_cast<PlaneIndex>(found - planes_.begin());
}

FakeRegistry::PlaneIndex FakeRegistry::addPlane(const QByteArray &plane)
{
    const PlaneIndex index = planeIndex(plane);
    if (index == planes_.size())
        planes_.push_back(plane);
    return index;
}

std::vector<FakeRegistry::Node> &FakeRegistry::addChildren(Node node, const QByteArray &plane)
{
    const PlaneIndex index = addPlane(plane);
    for (Children &children : at(node).children) {
        if (children.plane == index)
            return children.nodes;
    }
    return at(node).children.emplace_back(Children{index, {}}).nodes;
}

const std::vector<FakeRegistry::Node> &FakeRegistry::childrenInPlane(Node node, PlaneIndex plane)
{
    static const std::vector<Node> none;
    for (const Children &children : at(node).children) {
        if (children.plane == plane)
            return children.nodes;
    }
    return none;
}

FakeRegistry::PlaneTexts &FakeRegistry::addTexts(Node node, const QByteArray &plane)
{
    const PlaneIndex index = addPlane(plane);
    for (PlaneTexts &texts : at(node).planeTexts) {
        if (texts.plane == index)
            return texts;
    }
    return at(node).planeTexts.emplace_back(PlaneTexts{index, {}, {}, false});
}

const FakeRegistry::PlaneTexts *FakeRegistry::findTexts(const Object &object,
                                                        const char *plane) const
{
    if (!plane)
        return nullptr;
    for (const PlaneTexts &texts : object.planeTexts) {
        if (planes_[texts.plane] == plane)
            return &texts;
    }
    return nullptr;
}

const QByteArray &FakeRegistry::nameIn(const Object &object, const char *plane) const
{
    const PlaneTexts *const texts = findTexts(object, plane);
    return texts && !texts->name.isNull() ? texts->name : object.name;
}

const QByteArray &FakeRegistry::locationIn(const Object &object, const char *plane) const
{
    const PlaneTexts *const texts = findTexts(object, plane);
    return texts && texts->hasOwnLocation ? texts->location : object.location;
}

QByteArray FakeRegistry::nameAtLocation(const Object &object, const char *plane) const
{
    const QByteArray &location = locationIn(object, plane);
    return location.isNull() ? nameIn(object, plane) : nameIn(object, plane) + '@' + location;
}
