// SPDX-License-Identifier: Apache-2.0
#include "model/linux/ObjectTable.h"

#include "model/linux/ClassNames.h"
#include "model/linux/ObjectNames.h"
#include "model/linux/SysfsPlaces.h"

#include <QCryptographicHash>
#include <QtEndian>
#include <tuple>

namespace {
using Kind = RawObject::Kind;

// Whether a container is shown: others are plain folders, unless something in them could not be
// read.
bool needsPlace(const RawObject &object)
{
    const auto couldNotBe = [](const RawObject::Unread &its) {
        return !its.reason.startsWith(RawObject::leftOut);
    };
    return object.kind == Kind::Device ||
           std::any_of(object.unread.begin(), object.unread.end(), couldNotBe);
}

bool isDeviceOrContainer(const RawObject &object)
{
    return object.kind == Kind::Device || object.kind == Kind::Container;
}

// The folders above every device, and above containers that could not be read.
QSet<SysfsPath> foldersAboveDevices(const TreeContents &contents)
{
    QSet<SysfsPath> folders;
    for (const RawObject &object : contents.objects) {
        if (!isDeviceOrContainer(object) || !needsPlace(object))
            continue;
        SysfsPath folder = object.path.parent();
        while (!folder.isEmpty() && !folders.contains(folder)) {
            folders.insert(folder);
            folder = folder.parent();
        }
    }
    return folders;
}

// An ID made from the path, for inodes that are not unique, as in copies of a tree.
quint64 substituteID(const SysfsPath &path)
{
    constexpr quint64 mark = quint64(1) << 63;
    const QByteArray digest =
        QCryptographicHash::hash(path.toByteArray(), QCryptographicHash::Sha1);
    return mark | qFromBigEndian<quint64>(digest.constData());
}
} // namespace

ObjectTable::ObjectTable(TreeContents contents, RegistryValue::Members rootFacts,
                         RegistryValue::Members hostFacts, ClassNames &classNames)
{
    objects_.resize(2);
    at(root).kind = Kind::Root;
    at(root).id = at(root).nodeID = rootID;
    at(root).members = std::move(rootFacts);
    at(host).kind = Kind::Host;
    at(host).id = at(host).nodeID = hostID;
    at(host).members = std::move(hostFacts);
    collect(std::move(contents));
    addBindings();
    assignIDs();
    relate();
    findSubsystems();
    findModules();
    nameHost();
    nameAll(classNames);
    countReferences();
}

int ObjectTable::withPath(const SysfsPath &path) const
{
    return byPath_.value(path, HostObject::none);
}

int ObjectTable::linked(const HostObject &object, QByteArrayView link) const
{
    const SysfsPath target = object.link(link);
    return target.isEmpty() ? HostObject::none : withPath(target);
}

int ObjectTable::linked(const HostObject &object, QByteArrayView link, Kind kind) const
{
    const int target = linked(object, link);
    return target != HostObject::none && at(target).kind == kind ? target : HostObject::none;
}

void ObjectTable::collect(TreeContents contents)
{
    at(root).unread = std::move(contents.unread);
    const QSet<SysfsPath> folders = foldersAboveDevices(contents);
    objects_.reserve(2 * contents.objects.size());
    for (RawObject &object : contents.objects) {
        if (object.kind == Kind::Container && !needsPlace(object) && !folders.contains(object.path))
            continue;
        objects_.emplace_back();
        static_cast<RawObject &>(objects_.back()) = std::move(object);
    }
}

void ObjectTable::addBindings()
{
    const std::size_t count = objects_.size();
    for (std::size_t i = 0; i < count; ++i) {
        const SysfsPath driver = objects_[i].link("driver");
        if (objects_[i].kind != Kind::Device || !SysfsPlaces::isDriver(driver))
            continue;
        HostObject binding;
        binding.kind = Kind::Binding;
        binding.inode = objects_[i].driverLinkInode;
        binding.path = objects_[i].path.child("driver");
        binding.kernelName = driver.name();
        const auto text = [](const SysfsPath &path) {
            return RegistryValue::string(path.toString());
        };
        binding.members = {{CompactString(QStringLiteral("device")), text(objects_[i].path)},
                           {CompactString(QStringLiteral("driver")), text(driver)}};
        binding.links = {{"driver", driver}};
        objects_.push_back(std::move(binding));
    }
}

void ObjectTable::assignIDs()
{
    std::sort(objects_.begin() + 2, objects_.end(), [](const auto &a, const auto &b) {
        return a.inode != b.inode ? a.inode < b.inode : a.path < b.path;
    });
    quint64 last = hostID;
    for (std::size_t i = 2; i < objects_.size(); ++i) {
        HostObject &object = objects_[i];
        object.id = object.inode > last ? object.inode : substituteID(object.path);
        object.nodeID = object.id;
        last = std::max(last, object.inode);
    }
    std::sort(objects_.begin() + 2, objects_.end(),
              [](const auto &a, const auto &b) { return a.id < b.id; });
    for (int i = 2; i < count(); ++i)
        byPath_.insert(at(i).path, i);
}

void ObjectTable::relate()
{
    for (int i = 2; i < count(); ++i) {
        HostObject &object = at(i);
        if (object.kind == Kind::Binding) {
            object.device = object.parent = withPath(object.path.parent());
            object.driver = linked(object, "driver", Kind::Driver);
            at(object.device).binding = i;
            continue;
        }
        if (object.kind == Kind::Driver) { // bus/X/drivers/Y
            object.parent = withPath(object.path.parent().parent());
            continue;
        }
        for (SysfsPath folder = object.path.parent();
             !folder.isEmpty() && object.parent == HostObject::none; folder = folder.parent()) {
            const int candidate = withPath(folder);
            if (candidate == HostObject::none)
                continue;
            const HostObject &above = at(candidate);
            if (above.kind == object.kind ||
                (isDeviceOrContainer(above) && isDeviceOrContainer(object)))
                object.parent = candidate;
        }
    }
}

void ObjectTable::findSubsystems()
{
    // Which class or bus links to a device, for trees without "subsystem" links.
    QHash<SysfsPath, int> pointedAtBy;
    for (int i = 2; i < count(); ++i) {
        const HostObject &object = at(i);
        for (const RawObject::Link &link : object.links) {
            const bool isMember = object.kind == Kind::Class ? !link.name.contains('/')
                                                             : object.kind == Kind::Bus &&
                                                                   link.name.startsWith("devices/");
            if (isMember)
                pointedAtBy.insert(link.target, i);
        }
    }
    const auto setSubsystem = [this](HostObject &object, const SysfsPath &path) {
        object.subsystem = path.name();
        object.isOnBus = path.isBelow("bus");
        object.subsystemObject = withPath(path);
        // Old trees have the folder of block devices at the top, newer ones below "class".
        if (object.subsystemObject == HostObject::none && object.subsystem == "block")
            object.subsystemObject = withPath(SysfsPath(path == "block" ? "class/block" : "block"));
    };
    for (int i = 2; i < count(); ++i) {
        HostObject &object = at(i);
        if (object.kind != Kind::Device)
            continue;
        const SysfsPath target = object.link("subsystem");
        const int pointing = pointedAtBy.value(object.path, HostObject::none);
        if (SysfsPlaces::isSubsystem(target))
            setSubsystem(object, target);
        else if (pointing != HostObject::none)
            setSubsystem(object, at(pointing).path);
        else if (SysfsPlaces::isSystemDevice(object.path))
            setSubsystem(object,
                         SysfsPath("bus").child(SysfsPlaces::subsystemOfSystemDevice(object.path)));
    }
    for (int i = 2; i < count(); ++i) {
        HostObject &object = at(i);
        if (object.kind != Kind::Binding)
            continue;
        // The driver's path contains the bus even if the device has no subsystem link.
        setSubsystem(object, object.link("driver").parent().parent());
    }
}

QByteArray ObjectTable::moduleOfDriver(int driver) const
{
    const int module =
        driver == HostObject::none ? driver : linked(at(driver), "module", Kind::Module);
    // Built-in modules have a folder, too, but no initstate.
    if (module == HostObject::none || at(module).member(u"initstate").isNone())
        return {};
    return at(module).kernelName;
}

void ObjectTable::findModules()
{
    for (HostObject &object : objects_) {
        if (object.kind == Kind::Binding)
            object.module = moduleOfDriver(object.driver);
    }
    const auto isBound = [](const HostObject &object) {
        return object.binding != HostObject::none;
    };
    for (int i = 2; i < count(); ++i) {
        if (at(i).kind != Kind::Device)
            continue;
        const int bound = isBound(at(i)) ? i : above(i, isBound);
        if (bound != HostObject::none)
            at(i).module = at(at(bound).binding).module;
    }
}

void ObjectTable::nameHost()
{
    const int dmi = withPath("devices/virtual/dmi/id");
    QByteArray product;
    if (dmi != HostObject::none) {
        product = ObjectNames::sanitized(at(dmi).text(u"product_name"));
        const QStringView facts[] = {u"bios_date",    u"bios_vendor",     u"bios_version",
                                     u"board_name",   u"board_vendor",    u"board_version",
                                     u"chassis_type", u"chassis_vendor",  u"product_family",
                                     u"product_name", u"product_version", u"sys_vendor"};
        for (const QStringView fact : facts) {
            const RegistryValue &value = at(dmi).member(fact);
            if (!value.isNone())
                at(host).members.push_back({CompactString(fact.toString()), value});
        }
    }
    for (const auto &member : at(host).members) {
        if (product.isEmpty() && member.key.toOwner() == QLatin1String("model"))
            product = ObjectNames::sanitized(member.value.toString());
    }
    at(root).name = {"Root", {}};
    at(host).name = {product.isEmpty() ? QByteArray("Host") : product, {}};
}

void ObjectTable::nameAll(ClassNames &classNames)
{
    // A fixed order (kernel first, then by module, buses before classes, plain devices before those
    // of a type) decides which class gets a plain name, in whatever order the tree was read.
    struct Named
    {
        HostObject *object;
        bool hasType;
    };
    std::vector<Named> order;
    order.reserve(objects_.size());
    for (HostObject &object : objects_)
        order.push_back({&object, ClassNames::hasType(object)});
    std::stable_sort(order.begin(), order.end(), [](const Named &left, const Named &right) {
        const HostObject &a = *left.object;
        const HostObject &b = *right.object;
        return std::tie(a.module, b.isOnBus, a.subsystem, left.hasType) <
               std::tie(b.module, a.isOnBus, b.subsystem, right.hasType);
    });
    for (const Named &named : order)
        named.object->className = classNames.nameFor(*named.object);
    for (int i = 2; i < count(); ++i) {
        HostObject &object = at(i);
        object.name = object.kind == Kind::Device ? ObjectNames::ofDevice(object)
                                                  : ObjectNames::ofKernelName(object.kernelName);
        if (object.subsystem == "acpi" && object.kind == Kind::Device)
            object.namesInPlanes.push_back(
                {Plane::Firmware, ObjectNames::ofFirmwareDevice(object)});
        if (object.kind == Kind::Binding)
            object.namesInPlanes.push_back(
                {Plane::Driver,
                 {object.name.name,
                  ObjectNames::sanitized(QString::fromUtf8(at(object.device).kernelName))}});
    }
}

// Each child directory and each link to an object holds a reference.
void ObjectTable::countReferences()
{
    for (int i = 2; i < count(); ++i) {
        HostObject &object = at(i);
        if (object.parent != HostObject::none && object.kind != Kind::Binding)
            ++at(object.parent).retainCount;
        if (object.kind == Kind::Module)
            object.retainCount += static_cast<quint32>(object.member(u"refcnt").numberBits());
        if (object.kind == Kind::Binding)
            continue; // counted with its device
        for (const RawObject::Link &link : object.links) {
            const int target = withPath(link.target);
            if (target != HostObject::none)
                ++at(target).retainCount;
        }
    }
}
