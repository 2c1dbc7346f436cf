// SPDX-License-Identifier: Apache-2.0
#include "checks/Check.h"

namespace {
class DeviceNodeMissing : public Check
{
    Q_DECLARE_TR_FUNCTIONS(DeviceNodeMissing)
public:
    CheckDescription description() const override
    {
        return {.id = QStringLiteral("device-node-missing"),
                .severity = Severity::Warning,
                .subsystems = {},
                .key = QStringLiteral("dev"),
                .title = tr("Device has no node in /dev"),
                .explanation = tr("The kernel knows the device and made a node for it, but the "
                                  "node is gone. Programs cannot open the device."),
                .nextStep = tr("Find out what removed the node; plugging the device in again or "
                               "loading its driver again makes a new one."),
                .reading = {QStringLiteral("Documentation/ABI/testing/sysfs-uevent"),
                            QStringLiteral("Documentation/admin-guide/devices.rst")},
                .looksAround = true};
    }

    void look(const CheckedEntry &entry, const Report &report) const override
    {
        const DeviceNodes *const nodes = entry.registry().deviceNodes();
        const QString name = entry.text(u"uevent/DEVNAME");
        if (nodes && !name.isEmpty() && !nodes->has(name))
            report({QStringLiteral("/dev/") + name,
                    {QStringLiteral("dev"), QStringLiteral("uevent/DEVNAME")}});
    }
};
} // namespace

std::unique_ptr<const Check> makeDeviceNodeMissing()
{
    return std::make_unique<DeviceNodeMissing>();
}
