// SPDX-License-Identifier: Apache-2.0
#include "explorer/Explanations.h"

#include "platform/desktop/InterfaceLoader.h"
#include "platform/widgets/FactField.h"

#include <QCoreApplication>

namespace {
struct Explanation
{
    const char
        *subject; // a plane, or the name of a fact's widgets up to "Label", "Field" or "Cell"
    const char *text;
};

constexpr const char *context = "Explanations";

constexpr Explanation planes[] = {
    {"DxService",
     QT_TRANSLATE_NOOP("Explanations", "Every device below the one that it is attached to, and the "
                                       "driver that is bound to it")},
    {"DxBus", QT_TRANSLATE_NOOP("Explanations", "Devices by the bus that they are attached to")},
    {"DxClass", QT_TRANSLATE_NOOP("Explanations",
                                  "Devices by what they are for, such as block, net or input")},
    {"DxDriver",
     QT_TRANSLATE_NOOP("Explanations", "Drivers by bus, each with the devices that it drives")},
    {"DxModule", QT_TRANSLATE_NOOP("Explanations",
                                   "Kernel modules, each below the modules that it uses, and the "
                                   "drivers in them")},
    {"DxFirmware", QT_TRANSLATE_NOOP("Explanations",
                                     "Devices as the firmware describes them, by ACPI or a device "
                                     "tree")},
    {"DxPower",
     QT_TRANSLATE_NOOP("Explanations", "Each device below those that must have power before it")},
    {"DxUsb", QT_TRANSLATE_NOOP("Explanations", "USB devices and their interfaces, by hub")},
    {"DxBlock", QT_TRANSLATE_NOOP("Explanations",
                                  "Disks, their partitions, and what is stacked on them, such as "
                                  "RAID or encryption")},
    {"DxNetwork", QT_TRANSLATE_NOOP("Explanations",
                                    "Network interfaces, each below those that it stands on, such "
                                    "as a bridge on its ports")},
};

constexpr Explanation facts[] = {
    {"objectDevice",
     QT_TRANSLATE_NOOP("Explanations",
                       "What the hardware databases of this machine, or of the one that saved the "
                       "snapshot, call the device")},
    {"objectInheritance",
     QT_TRANSLATE_NOOP("Explanations",
                       "The entry's class, then each class that it inherits, up to the most "
                       "general")},
    {"objectBundle",
     QT_TRANSLATE_NOOP("Explanations",
                       "The kernel module whose driver serves the entry; org.linux.kernel is the "
                       "kernel itself")},
    {"objectBundleFile",
     QT_TRANSLATE_NOOP("Explanations", "The file of the kernel module on this machine")},
    {"objectKernelPath",
     QT_TRANSLATE_NOOP("Explanations", "Where the kernel shows the object in its own tree")},
    {"objectDeviceNode",
     QT_TRANSLATE_NOOP("Explanations", "The file by which programs use the device")},
    {"objectRetainCount",
     QT_TRANSLATE_NOOP("Explanations",
                       "How many others hold the object, as far as can be seen: it stays until "
                       "all of them let go")},
    {"objectBusyCount",
     QT_TRANSLATE_NOOP("Explanations",
                       "How much the kernel has still to do for the entry and for what is below "
                       "it; 0 when all is settled")},
    {"objectRegistered",
     QT_TRANSLATE_NOOP("Explanations", "The kernel has announced the entry to all programs")},
    {"objectMatched",
     QT_TRANSLATE_NOOP("Explanations", "A driver has been found for the entry, or it needs none")},
    {"objectActive",
     QT_TRANSLATE_NOOP("Explanations", "The entry is in use: it has not been removed")},
};

QString textOf(const Explanation &explanation)
{
    return QCoreApplication::translate(context, explanation.text);
}
} // namespace

QString Explanations::ofPlane(const QString &plane)
{
    const auto *const found =
        std::find_if(std::begin(planes), std::end(planes), [&](const Explanation &explanation) {
            return plane == QLatin1String(explanation.subject);
        });
    return found == std::end(planes) ? QString() : textOf(*found);
}

void Explanations::addTo(const QWidget &window)
{
    for (const Explanation &explanation : facts) {
        const QString text = textOf(explanation);
        for (const char *part : {"Label", "Cell"}) {
            const QString name = QLatin1String(explanation.subject) + QLatin1String(part);
            if (auto *const widget = window.findChild<QWidget *>(name)) {
                widget->setToolTip(text);
                widget->setAccessibleDescription(text);
            }
        }
        const QString field = QLatin1String(explanation.subject) + QLatin1String("Field");
        if (auto *const fact = window.findChild<FactField *>(field))
            fact->setExplanation(text);
    }
}
