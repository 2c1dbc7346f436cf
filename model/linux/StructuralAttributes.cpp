// SPDX-License-Identifier: Apache-2.0
#include "model/linux/StructuralAttributes.h"

#include <algorithm>
#include <span>

namespace {
using Kind = RawObject::Kind;

struct OfSubsystem
{
    const char *subsystem; // "": of all devices
    const char *name;
};

constexpr OfSubsystem attributes[] = {
    {"", "uevent"},
    {"", "waiting_for_supplier"},
    {"", "power/runtime_status"},
    {"pci", "class"},
    {"usb", "product"},
    {"usb", "interface"},
    {"usb", "idVendor"},
    {"usb", "idProduct"},
    {"usb", "bcdDevice"},
    {"usb", "bDeviceClass"},
    {"usb", "bDeviceSubClass"},
    {"usb", "bDeviceProtocol"},
    {"acpi", "path"},
    {"pnp", "id"},
    {"devlink", "sync_state_only"},
};

// The large ones: listing them takes longer than what is needed of their objects.
constexpr OfSubsystem foldersWithout[] = {
    {"block", "integrity"}, {"block", "mq"},     {"block", "queue"}, {"cpu", "cpuidle"},
    {"cpu", "hotplug"},     {"cpu", "topology"}, {"net", "queues"},  {"net", "statistics"},
    {"pci", "link"},        {"pci", "msi_irqs"},
};
// Every machine has hundreds of these, with an empty uevent and no power management.
constexpr const char memoryBlocks[] = "memory";
constexpr const char *foldersOfModules[] = {"notes", "parameters", "sections"};

bool isIn(std::span<const OfSubsystem> table, const QByteArray &subsystem, const QByteArray &name)
{
    return std::any_of(table.begin(), table.end(), [&](const OfSubsystem &its) {
        return name == its.name && (its.subsystem[0] == '\0' || subsystem == its.subsystem);
    });
}
} // namespace

StructuralAttributes::StructuralAttributes(QByteArray subsystem)
    : subsystem_(std::move(subsystem))
{}

void StructuralAttributes::noteUevent(const RegistryValue &uevent)
{
    hasModalias_ = !uevent.member(u"MODALIAS").isNone();
    hasNumber_ = !uevent.member(u"MAJOR").isNone();
}

bool StructuralAttributes::contains(const RawObject &object, const QByteArray &path) const
{
    // The host has the facts of "dmi/id". Whether a container is shown depends on what cannot be
    // read in it.
    if (object.kind == Kind::Container || object.path == "devices/virtual/dmi/id")
        return true;
    if (object.kind == Kind::Module)
        return path == "initstate" || path == "refcnt";
    if (object.kind != Kind::Device || subsystem_ == memoryBlocks)
        return false;
    if (path == "modalias")
        return !hasModalias_;
    if (path == "dev")
        return !hasNumber_;
    return isIn(attributes, subsystem_, path);
}

bool StructuralAttributes::noneIn(const RawObject &object, const QByteArray &folder) const
{
    if (object.kind == Kind::Module)
        return std::find(std::begin(foldersOfModules), std::end(foldersOfModules), folder) !=
               std::end(foldersOfModules);
    return object.kind == Kind::Device && isIn(foldersWithout, subsystem_, folder);
}
