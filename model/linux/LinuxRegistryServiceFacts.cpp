// SPDX-License-Identifier: Apache-2.0
// The operations of LinuxRegistryService on a single object.
#include "model/linux/KernelDeviceNodes.h"
#include "model/linux/KernelModules.h"
#include "model/linux/LinuxRegistryService.h"
#include "model/linux/RecordedHost.h"

#include <cstring>

namespace {
using Kind = RawObject::Kind;
} // namespace

HostInformation LinuxRegistryService::hostInformation()
{
    return root_->isKernels() ? NotifyingRegistryService::hostInformation()
                              : RecordedHost::of(root_->folder());
}

RegistryStatus LinuxRegistryService::copyText(const QByteArray &text, RegistryName &buffer)
{
    const auto size = static_cast<std::size_t>(text.size());
    if (size >= buffer.size())
        return RegistryStatus::Failed;
    std::memcpy(buffer.data(), text.constData(), size + 1);
    return RegistryStatus::Success;
}

RegistryStatus LinuxRegistryService::nameInPlane(RegistryObject object, const char *plane,
                                                 RegistryName &name)
{
    const HostObject *const its = find(object);
    if (!its)
        return RegistryStatus::Failed;
    const auto known = plane ? planeWithName(plane) : std::nullopt;
    return copyText(known ? its->nameInPlane(*known).name : its->name.name, name);
}

RegistryStatus LinuxRegistryService::locationInPlane(RegistryObject object, const char *plane,
                                                     RegistryName &location)
{
    const HostObject *const its = find(object);
    if (!its)
        return RegistryStatus::Failed;
    const auto known = plane ? planeWithName(plane) : std::nullopt;
    const QByteArray &text = known ? its->nameInPlane(*known).location : its->name.location;
    return text.isNull() ? RegistryStatus::NotFound : copyText(text, location);
}

QString LinuxRegistryService::copyClassName(RegistryObject object)
{
    const HostObject *const its = find(object);
    return its ? its->className : QString();
}

QString LinuxRegistryService::copySuperclassName(const QString &className)
{
    return classNames_.superclass(className);
}

QString LinuxRegistryService::copyBundleIdentifierForClass(const QString &className)
{
    return classNames_.bundle(className);
}

bool LinuxRegistryService::conformsTo(RegistryObject object, const QString &className)
{
    const HostObject *const its = find(object);
    return its && classNames_.isKindOf(its->className, className);
}

RegistryStatus LinuxRegistryService::entryID(RegistryObject object, quint64 &id)
{
    const HostObject *const its = find(object);
    if (!its)
        return RegistryStatus::Failed;
    id = its->id;
    return RegistryStatus::Success;
}

bool LinuxRegistryService::objectsEqual(RegistryObject a, RegistryObject b)
{
    const HostObject *const first = find(a);
    const HostObject *const second = find(b);
    return first && second && first->id == second->id;
}

RegistryStatus LinuxRegistryService::copyProperties(RegistryObject object,
                                                    RegistryValue &properties)
{
    const HostObject *const its = find(object);
    if (!its)
        return RegistryStatus::Failed;
    properties = its->properties;
    return RegistryStatus::Success;
}

RegistryValue LinuxRegistryService::copyProperty(RegistryObject object, const QString &key)
{
    const HostObject *const its = find(object);
    return its ? its->properties.member(key) : RegistryValue();
}

RegistryStatus LinuxRegistryService::serviceState(RegistryObject object, quint64 &state)
{
    const HostObject *const its = find(object);
    if (!its)
        return RegistryStatus::Failed;
    if (objects_.indexOf(object) == HostObject::none) {
        state = ServiceInactive;
        return RegistryStatus::Success;
    }
    const bool isMatched = its->kind != Kind::Device || its->binding != HostObject::none ||
                           (!its->subsystem.isEmpty() && !its->isOnBus);
    state = (its->isAnnounced ? quint64(ServiceRegistered) : 0) |
            (isMatched ? quint64(ServiceMatched) : 0);
    return RegistryStatus::Success;
}

RegistryStatus LinuxRegistryService::busyState(RegistryObject object, quint32 &busyCount)
{
    const HostObject *const its = find(object);
    if (!its)
        return RegistryStatus::Failed;
    busyCount = objects_.indexOf(object) == HostObject::none ? 0 : its->busyCount();
    return RegistryStatus::Success;
}

quint32 LinuxRegistryService::retainCount(RegistryObject object)
{
    const HostObject *const its = find(object);
    return its ? its->retainCount : 0;
}

bool LinuxRegistryService::isUnchangedSince(RegistryObject object, quint64 reading)
{
    const int index = objects_.indexOf(object);
    return index != HostObject::none && graph()->isUnchangedSince(index, reading);
}

// Of the machine that the tree describes, wherever the tree is.
QString LinuxRegistryService::kernelPath(RegistryObject object)
{
    const HostObject *const its = find(object);
    return its && !its->path.isEmpty() ? its->path.kernelPath() : QString();
}

// Of a recorded tree, the machine's modules are not at hand.
std::shared_ptr<const ModuleCatalog> LinuxRegistryService::moduleCatalog()
{
    if (moduleCatalog_ || !root_->isKernels())
        return moduleCatalog_;
    auto modules = std::make_shared<KernelModules>();
    if (modules->hasIndexes())
        moduleCatalog_ = std::move(modules);
    return moduleCatalog_;
}

std::shared_ptr<const DeviceNodes> LinuxRegistryService::deviceNodes()
{
    return root_->isKernels() && KernelDeviceNodes::areMadeByKernel()
               ? std::make_shared<KernelDeviceNodes>()
               : nullptr;
}

QString LinuxRegistryService::bundleURLForIdentifier(const QString &bundleID)
{
    return bundles_.fileOf(bundleID);
}
