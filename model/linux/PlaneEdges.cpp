// SPDX-License-Identifier: Apache-2.0
#include "model/linux/PlaneEdges.h"

#include <span>

namespace {
using Kind = RawObject::Kind;
constexpr int none = HostObject::none;

// The edges of one plane while they are collected.
class PlaneCollector
{
public:
    explicit PlaneCollector(const ObjectTable &objects)
        : objects_(objects)
    {}

    const ObjectTable &objects() const { return objects_; }
    // A member without a parent is placed below the host.
    void add(int child, int parent)
    {
        edges_.push_back({parent == none ? ObjectTable::host : parent, child});
    }
    void addEach(int child, std::span<const int> parents)
    {
        for (const int parent : parents)
            add(child, parent);
    }
    std::vector<Edge> take() { return std::move(edges_); }

private:
    const ObjectTable &objects_;
    std::vector<Edge> edges_;
};

template<class Action>
void forEach(const ObjectTable &objects, Kind kind, Action action)
{
    for (int i = 2; i < objects.count(); ++i) {
        if (objects.at(i).kind == kind)
            action(i, objects.at(i));
    }
}

// The devices that an object's links in a folder lead to, such as "slaves/".
template<class Predicate>
std::vector<int> linkedDevices(const ObjectTable &objects, const HostObject &object,
                               QByteArrayView prefix, Predicate predicate)
{
    std::vector<int> devices;
    for (const RawObject::Link &link : object.links) {
        if (!link.name.startsWith(prefix))
            continue;
        const int target = objects.withPath(link.target);
        if (target != none && predicate(objects.at(target)))
            devices.push_back(target);
    }
    return devices;
}

void addServices(PlaneCollector &plane)
{
    const ObjectTable &objects = plane.objects();
    for (int i = 2; i < objects.count(); ++i) {
        if (objects.at(i).isService())
            plane.add(i, objects.at(i).parent);
    }
}

void addSubsystems(PlaneCollector &plane, Kind kind)
{
    const ObjectTable &objects = plane.objects();
    const bool isBus = kind == Kind::Bus;
    forEach(objects, kind, [&](int i, const HostObject &) { plane.add(i, none); });
    forEach(objects, Kind::Device, [&](int i, const HostObject &device) {
        if (device.subsystem.isEmpty() || device.isOnBus != isBus)
            return;
        const int sibling = objects.above(i, [&](const HostObject &above) {
            return above.kind == Kind::Device && above.subsystem == device.subsystem &&
                   above.isOnBus == isBus;
        });
        plane.add(i, sibling != none ? sibling : device.subsystemObject);
    });
}

void addDrivers(PlaneCollector &plane)
{
    const ObjectTable &objects = plane.objects();
    forEach(objects, Kind::Bus, [&](int i, const HostObject &) { plane.add(i, none); });
    forEach(objects, Kind::Driver,
            [&](int i, const HostObject &driver) { plane.add(i, driver.parent); });
    forEach(objects, Kind::Binding, [&](int i, const HostObject &binding) {
        plane.add(i, binding.driver != none ? binding.driver : binding.subsystemObject);
    });
}

void addModules(PlaneCollector &plane)
{
    const ObjectTable &objects = plane.objects();
    std::vector<bool> hasParent(static_cast<std::size_t>(objects.count()));
    forEach(objects, Kind::Module, [&](int i, const HostObject &module) {
        for (const int holder : linkedDevices(objects, module, "holders/", [](const auto &object) {
                 return object.kind == Kind::Module;
             })) {
            plane.add(holder, i);
            hasParent[static_cast<std::size_t>(holder)] = true;
        }
    });
    forEach(objects, Kind::Module, [&](int i, const HostObject &) {
        if (!hasParent[static_cast<std::size_t>(i)])
            plane.add(i, none);
    });
    forEach(objects, Kind::Driver, [&](int i, const HostObject &driver) {
        const int module = objects.linked(driver, "module", Kind::Module);
        if (module != none)
            plane.add(i, module);
    });
}

void addFirmware(PlaneCollector &plane)
{
    const ObjectTable &objects = plane.objects();
    const auto isAcpi = [](const HostObject &object) {
        return object.kind == Kind::Device &&
               object.path.toByteArray().startsWith("devices/LNXSYSTM");
    };
    forEach(objects, Kind::FirmwareNode,
            [&](int i, const HostObject &node) { plane.add(i, node.parent); });
    forEach(objects, Kind::Device, [&](int i, const HostObject &device) {
        if (isAcpi(device)) {
            plane.add(i, objects.above(i, isAcpi));
            return;
        }
        for (const char *const link : {"firmware_node", "of_node"}) {
            const int node = objects.linked(device, link);
            if (node != none &&
                (isAcpi(objects.at(node)) || objects.at(node).kind == Kind::FirmwareNode))
                plane.add(i, node);
        }
    });
}

void addPower(PlaneCollector &plane)
{
    const ObjectTable &objects = plane.objects();
    const auto size = static_cast<std::size_t>(objects.count());
    std::vector<std::vector<int>> parents(size);
    std::vector<bool> isMember(size);
    const auto isDevice = [](const HostObject &object) { return object.kind == Kind::Device; };
    const auto addNeed = [&](int consumer, int supplier) {
        parents[static_cast<std::size_t>(consumer)].push_back(supplier);
        isMember[static_cast<std::size_t>(consumer)] = true;
        isMember[static_cast<std::size_t>(supplier)] = true;
    };
    forEach(objects, Kind::Device, [&](int i, const HostObject &device) {
        const QString status = device.member(u"power").member(u"runtime_status").toString();
        if (!status.isEmpty() && status != QLatin1String("unsupported"))
            isMember[static_cast<std::size_t>(i)] = true;
        const int firmware = objects.linked(device, "firmware_node");
        if (firmware != none) {
            for (const int resource :
                 linkedDevices(objects, objects.at(firmware), "power_resources_D0/", isDevice))
                addNeed(i, resource);
        }
        const int supplier = objects.linked(device, "supplier");
        const int consumer = objects.linked(device, "consumer");
        // Links that only order sync_state() may form cycles.
        if (device.subsystem == "devlink" && supplier != none && consumer != none &&
            isDevice(objects.at(supplier)) && isDevice(objects.at(consumer)) &&
            device.member(u"sync_state_only").numberBits() != 1)
            addNeed(consumer, supplier);
    });
    forEach(objects, Kind::Device, [&](int i, const HostObject &) {
        const auto index = static_cast<std::size_t>(i);
        if (!isMember[index])
            return;
        plane.addEach(i, parents[index]);
        if (parents[index].empty()) {
            int above = objects.at(i).parent;
            while (above != none && !isMember[static_cast<std::size_t>(above)])
                above = objects.at(above).parent;
            plane.add(i, above);
        }
    });
}

void addUsb(PlaneCollector &plane)
{
    const ObjectTable &objects = plane.objects();
    const auto isUsb = [](const HostObject &object) { return object.subsystem == "usb"; };
    forEach(objects, Kind::Device, [&](int i, const HostObject &device) {
        if (isUsb(device))
            plane.add(i, objects.above(i, isUsb));
    });
}

// Stacked devices: their parents are given by links, else the nearest object above or the host.
void addStacked(PlaneCollector &plane, QByteArrayView subsystem, QByteArrayView linkPrefix)
{
    const ObjectTable &objects = plane.objects();
    const auto isMember = [&](const HostObject &object) {
        return object.kind == Kind::Device && object.subsystem == subsystem;
    };
    forEach(objects, Kind::Device, [&](int i, const HostObject &device) {
        if (!isMember(device))
            return;
        const auto below = linkedDevices(objects, device, linkPrefix, isMember);
        plane.addEach(i, below);
        if (below.empty())
            plane.add(i, objects.above(i, isMember));
    });
}

std::vector<Edge> collect(const ObjectTable &objects, Plane plane)
{
    PlaneCollector collector(objects);
    switch (plane) {
    case Plane::Service:
        addServices(collector);
        break;
    case Plane::Bus:
        addSubsystems(collector, Kind::Bus);
        break;
    case Plane::Class:
        addSubsystems(collector, Kind::Class);
        break;
    case Plane::Driver:
        addDrivers(collector);
        break;
    case Plane::Module:
        addModules(collector);
        break;
    case Plane::Firmware:
        addFirmware(collector);
        break;
    case Plane::Power:
        addPower(collector);
        break;
    case Plane::Usb:
        addUsb(collector);
        break;
    case Plane::Block:
        addStacked(collector, "block", "slaves/");
        break;
    case Plane::Network:
        addStacked(collector, "net", "lower_");
        break;
    }
    return collector.take();
}

void refuse(ObjectTable &objects, Plane plane, const std::vector<Edge> &refused,
            const QString &reason = {})
{
    const QString planeName = QString::fromLatin1(planeNames[static_cast<std::size_t>(plane)]);
    for (const auto &[parent, child] : refused)
        objects.at(child).refusedParents.append(planeName + QStringLiteral(": ") +
                                                objects.at(parent).path.toString() + reason);
}

// A member with all parents refused is placed below the host.
void adoptOrphans(std::vector<Edge> &edges, const std::vector<Edge> &refused, int count)
{
    if (refused.empty())
        return;
    std::vector<bool> hasParent(static_cast<std::size_t>(count));
    for (const auto &[parent, child] : edges)
        hasParent[static_cast<std::size_t>(child)] = true;
    for (const auto &[parent, child] : refused) {
        if (!hasParent[static_cast<std::size_t>(child)])
            edges.push_back({ObjectTable::host, child});
        hasParent[static_cast<std::size_t>(child)] = true;
    }
    std::sort(edges.begin(), edges.end());
}
} // namespace

std::array<std::vector<Edge>, planeCount> planeEdges(ObjectTable &objects)
{
    std::array<std::vector<Edge>, planeCount> planes;
    for (std::size_t i = 0; i < planeCount; ++i) {
        const auto plane = static_cast<Plane>(i);
        std::vector<Edge> &edges = planes[i] = collect(objects, plane);
        const bool alwaysExists = plane <= Plane::Driver;
        if (edges.empty() && !alwaysExists)
            continue;
        edges.push_back({ObjectTable::root, ObjectTable::host});
        // Cycles are decided in the order of IDs.
        std::sort(edges.begin(), edges.end());
        edges.erase(std::unique(edges.begin(), edges.end()), edges.end());
        RefusedEdges refused = takeOutCycles(edges, objects.count());
        refuse(objects, plane, refused.closing);
        refuse(objects, plane, refused.unchecked,
               QStringLiteral(" (not checked: too many links in loops)"));
        std::vector<Edge> &all = refused.closing;
        all.insert(all.end(), refused.unchecked.begin(), refused.unchecked.end());
        adoptOrphans(edges, all, objects.count());
    }
    return planes;
}
