#include "model/linux/AttributePolicy.h"

#include <QSet>
#include <algorithm>

namespace {
using Rule = AttributePolicy::Rule;
using Names = QSet<QByteArray>;

// Write-only on every kernel, or ports and memory of the device.
const Names neverRead{
    "autosuspend_delay_ms", // an I/O error nearly always
    "bind",
    "data", // device core dumps
    "drivers_probe",
    "hot_add", // reading creates a device
    "legacy_io",
    "legacy_mem",
    "new_id",
    "remove",
    "remove_id",
    "rescan",
    "rom",
    "unbind",
    "vpd",
};

const Names onRequest{
    "bConfigurationValue", // waits for the device's lock
    "config",
    "cpuinfo_avg_freq",
    "cpuinfo_cur_freq",
    "descriptors", // waits for the device's lock
    "eeprom",
    "nvmem",
    "scaling_cur_freq",
};

// Verbs in a class's own attributes: such an attribute does something.
const Names classVerbs{"add",   "alloc",  "attach", "connect", "create", "export",
                       "hot",   "insert", "load",   "new",     "probe",  "register",
                       "reset", "scan",   "start",  "trigger"};

bool hasVerb(const QByteArray &name)
{
    const QList<QByteArray> parts = QByteArray(name).replace('-', '_').split('_');
    return std::any_of(parts.begin(), parts.end(),
                       [](const QByteArray &part) { return classVerbs.contains(part); });
}

bool isNeverRead(const AttributePolicy::Context &context, const QByteArray &name)
{
    if (neverRead.contains(name) || name.startsWith("resource") || name.startsWith("trace"))
        return true;
    switch (context.folder) {
    case AttributePolicy::Folder::Class:
        return hasVerb(name);
    case AttributePolicy::Folder::Bus:
    case AttributePolicy::Folder::Driver:
    case AttributePolicy::Folder::Module:
        return name == "uevent"; // write-only there
    default:
        return name.endsWith("_log") || name == "log"; // may never end
    }
}

// A measured value: reading asks the hardware over its bus.
bool isMeasured(const AttributePolicy::Context &context, const QByteArray &folder,
                const QByteArray &name)
{
    const QByteArray &subsystem = context.subsystem;
    if (subsystem == "hwmon")
        return name.contains('_') && name != "update_interval";
    if (subsystem == "thermal")
        return name == "temp" || name == "cur_state" || name.startsWith("trip_point_");
    if (subsystem == "power_supply")
        return folder.isEmpty() && name != "type";
    if (subsystem == "tpm")
        return name.startsWith("pcr") || folder.startsWith("pcr") || name == "caps" ||
               name == "durations" || name == "pubek" || name == "timeouts";
    if (subsystem == "infiniband")
        return folder.endsWith("counters");
    return false;
}

bool asksTheLink(const QByteArray &name)
{
    return name == "speed" || name == "duplex" || name.startsWith("phys_") ||
           name.startsWith("carrier");
}
} // namespace

AttributePolicy::Rule AttributePolicy::rule(const Context &context, const QByteArray &folder,
                                            const QByteArray &name)
{
    if (isNeverRead(context, name))
        return Rule::Never;
    if (onRequest.contains(name) || name.startsWith("nvm_") ||
        (context.isInterfaceDown && folder.isEmpty() && asksTheLink(name)) ||
        isMeasured(context, folder, name))
        return Rule::OnRequest;
    return Rule::Always;
}

bool AttributePolicy::skipsDirectory(const QByteArray &name)
{
    return name.endsWith("_descriptor") || name.endsWith("_descriptors") ||
           name.startsWith("trace") || name == "debug";
}
