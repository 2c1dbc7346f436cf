// SPDX-License-Identifier: Apache-2.0
#include "model/linux/StructuralAttributes.h"

#include <span>

namespace {
using Kind = RawObject::Kind;

struct OfSubsystem
{
    const char *subsystem; // "": of all devices
    const char *attribute;
};

constexpr OfSubsystem ofDevices[] = {
    {"", "uevent"},
    {"", "dev"},
    {"", "waiting_for_supplier"},
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
} // namespace

bool StructuralAttributes::contains(const RawObject &object, const QByteArray &subsystem,
                                    bool hasModalias, const QByteArray &path)
{
    // The host has the facts of "dmi/id". Whether a container is shown depends on what cannot be
    // read in it.
    if (object.kind == Kind::Container || object.path == "devices/virtual/dmi/id")
        return true;
    if (object.kind == Kind::Module)
        return path == "initstate" || path == "refcnt";
    if (object.kind != Kind::Device)
        return false;
    if (path == "modalias")
        return !hasModalias;
    return std::any_of(std::begin(ofDevices), std::end(ofDevices), [&](const OfSubsystem &its) {
        return path == its.attribute && (its.subsystem[0] == '\0' || subsystem == its.subsystem);
    });
}
