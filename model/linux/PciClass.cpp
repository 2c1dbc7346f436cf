// SPDX-License-Identifier: Apache-2.0
#include "model/linux/PciClass.h"

namespace {
struct Word
{
    quint32 code; // base class and subclass; subclass 0xff: any other
    const char *word;
};

// Subclasses come before their base class.
constexpr Word classWords[] = {
    {0x0200, "ethernet"},      {0x0280, "wireless"},    {0x02ff, "network"},
    {0x0108, "nvme"},          {0x0106, "sata"},        {0x0100, "scsi"},
    {0x0101, "ide"},           {0x01ff, "storage"},     {0x03ff, "display"},
    {0x0401, "audio"},         {0x0403, "audio"},       {0x04ff, "multimedia"},
    {0x05ff, "memory"},        {0x0600, "host-bridge"}, {0x0601, "isa-bridge"},
    {0x0604, "pci-bridge"},    {0x06ff, "bridge"},      {0x0700, "serial"},
    {0x07ff, "communication"}, {0x0c03, "usb"},         {0x0c05, "smbus"},
    {0x0cff, "serial-bus"},    {0x08ff, "system"},      {0x09ff, "input"},
    {0x0bff, "processor"},     {0x0dff, "wireless"},    {0x10ff, "crypto"},
    {0x12ff, "accelerator"},
};

// By base class.
constexpr const char *baseClasses[] = {
    "",          "Storage",   "Network",       "Display",     "Multimedia",
    "Memory",    "Bridge",    "Communication", "System",      "Input",
    "Docking",   "Processor", "SerialBus",     "Wireless",    "Intelligent",
    "Satellite", "Crypto",    "Signal",        "Accelerator",
};
} // namespace

PciClass::PciClass(const RawObject &device)
{
    const RegistryValue &attribute = device.member(u"class");
    if (attribute.type() == RegistryValue::Type::Number)
        code_ = static_cast<quint32>(attribute.numberBits());
    else
        code_ = device.member(u"uevent").member(u"PCI_CLASS").toString().toUInt(nullptr, 16);
}

QByteArray PciClass::word() const
{
    const quint32 code = code_ >> 8;
    for (const Word &candidate : classWords) {
        const bool isAnySubclass = (candidate.code & 0xff) == 0xff;
        if (isAnySubclass ? code >> 8 == candidate.code >> 8 : code == candidate.code)
            return candidate.word;
    }
    return "pci";
}

QString PciClass::baseClass() const
{
    const std::size_t base = code_ >> 16;
    return base < std::size(baseClasses) ? QString::fromLatin1(baseClasses[base]) : QString();
}
