// SPDX-License-Identifier: Apache-2.0
#include "explorer/EntryKind.h"

#include "model/TavRegistryEntry.h"

#include <QHash>

namespace {
using enum EntryKind;

constexpr struct
{
    const char *name;
    const char *freedesktopName = "";
} kinds[] = {
    {"device"},
    {"bridge"},
    {"bus"},
    {"card"},
    {"class"},
    {"computer", "computer-symbolic"},
    {"container", "folder-symbolic"},
    {"cpu"},
    {"disk", "drive-harddisk-symbolic"},
    {"display", "video-display-symbolic"},
    {"driver"},
    {"firmware", "application-x-firmware-symbolic"},
    {"input", "input-keyboard-symbolic"},
    {"memory"},
    {"module", "application-x-addon-symbolic"},
    {"network", "network-wired-symbolic"},
    {"partition"},
    {"power"},
    {"sensor"},
    {"sound", "audio-card-symbolic"},
    {"usb"},
};
static_assert(std::size(kinds) == static_cast<std::size_t>(Count));

constexpr struct
{
    const char *className;
    EntryKind kind;
} kindsOfClasses[] = {
    {"DxAcpiDevice", Firmware},
    {"DxAtaDevice", Disk},
    {"DxBacklightDevice", Screen},
    {"DxBinding", Driver},
    {"DxBlockDevice", Disk},
    {"DxBlockPartition", Partition},
    {"DxBluetoothDevice", Network},
    {"DxBsgDevice", Disk},
    {"DxBus", Bus},
    {"DxClass", Class},
    {"DxContainer", Container},
    {"DxCpuDevice", Cpu},
    {"DxDaxDevice", Memory},
    {"DxDmiDevice", Firmware},
    {"DxDriver", Driver},
    {"DxDrmDevice", Screen},
    {"DxEdacDevice", Memory},
    {"DxFirmwareNode", Firmware},
    {"DxGraphicsDevice", Screen},
    {"DxHdaudioDevice", Sound},
    {"DxHidDevice", Input},
    {"DxHidrawDevice", Input},
    {"DxHost", Computer},
    {"DxHwmonDevice", Sensor},
    {"DxI2cDevice", Bus},
    {"DxIeee80211Device", Network},
    {"DxIioDevice", Sensor},
    {"DxInputDevice", Input},
    {"DxMachinecheckDevice", Cpu},
    {"DxMdioBusDevice", Network},
    {"DxMemoryDevice", Memory},
    {"DxMmcDevice", Disk},
    {"DxModule", Module},
    {"DxNdDevice", Memory},
    {"DxNetDevice", Network},
    {"DxNodeDevice", Memory},
    {"DxNvmeDevice", Disk},
    {"DxNvmemDevice", Memory},
    {"DxPciBridge", Bridge},
    {"DxPciBusDevice", Bridge},
    {"DxPciDevice", Card},
    {"DxPciDisplay", Screen},
    {"DxPciExpressDevice", Bridge},
    {"DxPciInput", Input},
    {"DxPciMemory", Memory},
    {"DxPciMultimedia", Sound},
    {"DxPciNetwork", Network},
    {"DxPciProcessor", Cpu},
    {"DxPciSerialBus", Bus},
    {"DxPciStorage", Disk},
    {"DxPciWireless", Network},
    {"DxPnpDevice", Firmware},
    {"DxPowerSupplyDevice", Power},
    {"DxPowercapDevice", Power},
    {"DxRegulatorDevice", Power},
    {"DxRfkillDevice", Network},
    {"DxRoot", Computer},
    {"DxScsiDevice", Disk},
    {"DxScsiDiskDevice", Disk},
    {"DxScsiHostDevice", Disk},
    {"DxSerioDevice", Input},
    {"DxSoundDevice", Sound},
    {"DxSpiMasterDevice", Bus},
    {"DxThermalDevice", Sensor},
    {"DxUsbDevice", Usb},
    {"DxUsbEndpointDevice", Usb},
    {"DxUsbHostDevice", Usb},
    {"DxWakeupDevice", Power},
    {"DxWmiDevice", Firmware},
    {"DxWwanDevice", Network},
};

// Of the most derived class that has one.
EntryKind kindOfClasses(const QStringList &inheritance)
{
    static const QHash<QString, EntryKind> kindOf = [] {
        QHash<QString, EntryKind> table;
        for (const auto &[className, kind] : kindsOfClasses)
            table.insert(QLatin1String(className), kind);
        return table;
    }();
    for (const QString &className : inheritance) {
        const auto found = kindOf.constFind(className);
        if (found != kindOf.constEnd())
            return *found;
    }
    return Device;
}
} // namespace

EntryKind entryKind(const TavRegistryEntry &entry)
{
    const EntryKind kind = kindOfClasses(entry.inheritance());
    // The class of a PCI controller for a bus does not say for which one, but its name does.
    return kind == Bus && entry.facts().name == QLatin1String("usb") ? Usb : kind;
}

const char *entryKindName(EntryKind kind)
{
    return kinds[static_cast<std::size_t>(kind)].name;
}

const char *freedesktopName(EntryKind kind)
{
    return kinds[static_cast<std::size_t>(kind)].freedesktopName;
}
