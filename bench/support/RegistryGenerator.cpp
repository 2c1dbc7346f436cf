// SPDX-License-Identifier: Apache-2.0
#include "bench/support/RegistryGenerator.h"

#include "bench/support/PropertyTableGenerator.h"

namespace {
using Node = FakeRegistry::Node;

constexpr quint32 subtreeSize = 500;    // devices below one top device
constexpr quint32 containerSize = 4000; // maximum children of a container
constexpr quint32 groupSize = 2000;     // entries for each bus or class
constexpr quint32 classCount = 60;

class Generator
{
public:
    Generator(FakeRegistryService &registry, const RegistryGenerator::Shape &shape)
        : registry_(registry)
        , shape_(shape)
        , random_(shape.seed)
        , tables_(shape.seed)
    {}

    void run()
    {
        addClasses();
        addTops();
        while (count_ + subtreeSize < shape_.entries) {
            addSubtree(subtreeSize * 9 / 10);
            addContained(subtreeSize / 10);
        }
        addSubtree(shape_.entries - count_);
        registry_.publishPlanes();
    }

private:
    static QString className(quint32 index)
    {
        return QStringLiteral("DxGenerated%1Device").arg(index);
    }

    void addClasses()
    {
        const QStringList bases{QStringLiteral("DxBusDevice"), QStringLiteral("DxDevice"),
                                QStringLiteral("DxService"), QStringLiteral("DxRegistryEntry")};
        for (quint32 i = 0; i < classCount; ++i) {
            const QString name = className(i);
            registry_.addClassChain(QStringList(name) + bases);
            registry_.addClass(name, bases.constFirst(),
                               i % 3 ? QStringLiteral("__kernel__")
                                     : QStringLiteral("generated_%1").arg(i));
            classes_.push_back(name);
        }
    }

    Node add(const QByteArray &name, const QByteArray &location = {})
    {
        const QString &nodeClass = classes_[random_.bounded(classCount)];
        const Node node = registry_.add(nodeClass, name, location);
        registry_.setProperties(node, tables_.table(shape_.nodesPerEntry));
        registry_.setState(node, ServiceRegistered | random_.bounded(2) * ServiceMatched);
        registry_.setRetainCount(node, 1 + random_.bounded(9));
        ++count_;
        return node;
    }

    void addTops()
    {
        const Node root = add("Root");
        registry_.setRoot(root);
        host_ = add("Generated Host");
        for (const char *plane :
             {"DxService", "DxBus", "DxClass", "DxDriver", "DxPower", "DxNetwork"})
            registry_.link(root, host_, plane);
        const quint32 groups = 8 + shape_.entries / groupSize;
        for (quint32 i = 0; i < groups; ++i) {
            buses_.push_back(addGroup("bus", i, "DxBus"));
            deviceClasses_.push_back(addGroup("class", i, "DxClass"));
            drivers_.push_back(addGroup("driver", i, "DxDriver"));
        }
    }

    Node addGroup(const QByteArray &stem, quint32 index, const char *plane)
    {
        const Node node = add(stem + QByteArray::number(index));
        registry_.link(host_, node, plane);
        return node;
    }

    Node oneOf(const std::vector<Node> &nodes)
    {
        return nodes[random_.bounded(static_cast<quint32>(nodes.size()))];
    }

    // A top device and others below it, each below any earlier one.
    void addSubtree(quint32 size)
    {
        std::vector<Node> devices;
        for (quint32 i = 0; i < size; ++i) {
            const Node parent = devices.empty() ? host_ : oneOf(devices);
            if (!devices.empty() && random_.bounded(10) == 0)
                addBinding(parent);
            else
                devices.push_back(addDevice(parent));
        }
        addSecondParents(devices);
    }

    Node addDevice(Node parent)
    {
        const QByteArray location =
            random_.bounded(3) == 0 ? QByteArray::number(count_, 16) : QByteArray();
        const Node node = add("device" + QByteArray::number(random_.bounded(1000)), location);
        registry_.link(parent, node, "DxService");
        if (random_.bounded(10) < 6)
            registry_.link(oneOf(buses_), node, "DxBus");
        if (random_.bounded(10) < 5)
            registry_.link(oneOf(deviceClasses_), node, "DxClass");
        registry_.link(parent, node, "DxPower");
        return node;
    }

    void addBinding(Node device)
    {
        const Node node = add("binding");
        registry_.setLocation(node, QByteArray::number(device), "DxDriver");
        registry_.link(device, node, "DxService");
        registry_.link(oneOf(drivers_), node, "DxDriver");
    }

    // One device in sixteen gets a second parent in one plane and two in another. Parents precede
    // children, so there are no cycles.
    void addSecondParents(const std::vector<Node> &devices)
    {
        std::vector<Node> interfaces{devices.front()};
        registry_.link(host_, devices.front(), "DxNetwork");
        for (std::size_t i = 4; i < devices.size(); i += 16) {
            registry_.link(devices[i / 2], devices[i], "DxPower");
            registry_.link(interfaces.front(), devices[i], "DxNetwork");
            if (interfaces.size() > 1)
                registry_.link(interfaces.back(), devices[i], "DxNetwork");
            interfaces.push_back(devices[i]);
        }
    }

    void addContained(quint32 size)
    {
        for (quint32 i = 0; i < size; ++i) {
            if (contained_++ % containerSize == 0) {
                container_ = add("virtual" + QByteArray::number(contained_));
                registry_.link(host_, container_, "DxService");
            }
            addDevice(container_);
        }
    }

    FakeRegistryService &registry_;
    RegistryGenerator::Shape shape_;
    QRandomGenerator random_;
    PropertyTableGenerator tables_;
    quint32 count_ = 0;
    quint32 contained_ = 0;
    QStringList classes_;
    Node host_ = 0;
    Node container_ = 0;
    std::vector<Node> buses_;
    std::vector<Node> deviceClasses_;
    std::vector<Node> drivers_;
};
} // namespace

void RegistryGenerator::generate(FakeRegistryService &registry, const Shape &shape)
{
    Generator(registry, shape).run();
}
