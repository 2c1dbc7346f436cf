#include "model/linux/ObjectNames.h"

#include <QRegularExpression>

namespace {
constexpr qsizetype longestName = 127;

struct PciName
{
    unsigned code; // base class and subclass, or base class and 0xff for any subclass
    const char *name;
};

// Subclasses before the base class that they belong to.
constexpr PciName pciNames[] = {
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

QByteArray pciName(quint64 classCode)
{
    const auto code = static_cast<unsigned>(classCode >> 8) & 0xffff;
    for (const PciName &candidate : pciNames) {
        const unsigned mask = (candidate.code & 0xff) == 0xff ? 0xff00 : 0xffff;
        if ((code & mask) == (candidate.code & mask))
            return candidate.name;
    }
    return "pci";
}

QByteArray cut(QByteArray utf8)
{
    if (utf8.size() <= longestName)
        return utf8;
    qsizetype end = longestName;
    while (end > 0 && (static_cast<unsigned char>(utf8[end]) & 0xc0) == 0x80)
        --end;
    utf8.truncate(end);
    return utf8;
}

QByteArray validName(const QByteArray &kernelName)
{
    return cut(QString::fromUtf8(kernelName).toUtf8());
}

QByteArray textOr(const HostObject &device, QStringView attribute, const QByteArray &otherwise)
{
    const QByteArray text = ObjectNames::sanitized(device.text(attribute));
    return text.isEmpty() ? otherwise : text;
}

QByteArray usbNumbers(const HostObject &device)
{
    const auto hex = [&](QStringView attribute) {
        return QByteArray::number(device.member(attribute).numberBits(), 16).rightJustified(4, '0');
    };
    return "usb" + hex(u"idVendor") + ',' + hex(u"idProduct");
}

NameAndLocation ofUsb(const HostObject &device)
{
    const qsizetype colon = device.kernelName.indexOf(':');
    if (colon >= 0)
        return {textOr(device, u"interface", "interface"), device.kernelName.mid(colon + 1)};
    return {textOr(device, u"product", usbNumbers(device)), device.kernelName};
}

NameAndLocation ofPlatform(const QByteArray &kernelName)
{
    static const QRegularExpression addressFirst(
        QStringLiteral("^([0-9a-f]+)\\.(.*[^0-9a-f.].*)$"));
    static const QRegularExpression numberLast(QStringLiteral("^(.+)\\.([0-9]+)(\\.auto)?$"));
    const QString text = QString::fromUtf8(kernelName);
    if (const auto match = addressFirst.match(text); match.hasMatch())
        return {match.captured(2).toUtf8(), match.captured(1).toUtf8()};
    if (const auto match = numberLast.match(text); match.hasMatch())
        return {match.captured(1).toUtf8(), match.captured(2).toUtf8()};
    return ObjectNames::ofKernelName(kernelName);
}

// "0:0:0:0", "00:05", "1-0050", "3": digits and hexadecimal digits with separators.
bool isAddress(const QByteArray &name)
{
    bool hasSeparator = false;
    bool allDecimal = true;
    bool afterDigit = false;
    for (const char c : name) {
        const bool isSeparator = c == ':' || c == '.' || c == '-' || c == ',';
        if (isSeparator ? !afterDigit : !std::isxdigit(static_cast<unsigned char>(c)))
            return false;
        hasSeparator = hasSeparator || isSeparator;
        allDecimal = allDecimal && (isSeparator || (c >= '0' && c <= '9'));
        afterDigit = !isSeparator;
    }
    return afterDigit && (hasSeparator || allDecimal);
}

QByteArray firstElement(const RegistryValue &value)
{
    const auto elements = value.elements();
    const RegistryValue &first = elements.empty() ? value : elements.front();
    return ObjectNames::sanitized(first.toString());
}
} // namespace

QByteArray ObjectNames::sanitized(const QString &text)
{
    QString clean;
    for (const QChar c : text) {
        if (c.category() != QChar::Other_Control)
            clean += c == u'/' ? QChar(u'!') : c;
    }
    return cut(clean.trimmed().toUtf8());
}

NameAndLocation ObjectNames::ofKernelName(const QByteArray &kernelName)
{
    const QByteArray name = validName(kernelName);
    const qsizetype at = name.lastIndexOf('@');
    if (at > 0 && at + 1 < name.size())
        return {name.left(at), name.mid(at + 1)};
    return {name, {}};
}

NameAndLocation ObjectNames::ofDevice(const HostObject &device)
{
    const QByteArray name = validName(device.kernelName);
    const QByteArray &subsystem = device.subsystem;
    if (subsystem == "pci")
        return {pciName(device.member(u"class").numberBits()), name};
    if (subsystem == "usb")
        return ofUsb(device);
    if (subsystem == "acpi") {
        const qsizetype colon = name.lastIndexOf(':');
        return colon > 0 ? NameAndLocation{name.left(colon), name.mid(colon + 1)}
                         : NameAndLocation{name, {}};
    }
    if (subsystem == "pnp") {
        const QByteArray first = firstElement(device.member(u"id"));
        if (!first.isEmpty())
            return {first, name};
    }
    if (subsystem == "platform")
        return ofPlatform(name);
    if (!subsystem.isEmpty() && isAddress(name))
        return {validName(subsystem), name};
    return ofKernelName(name);
}

NameAndLocation ObjectNames::ofFirmwareDevice(const HostObject &device)
{
    const QByteArray path = sanitized(device.text(u"path"));
    const QByteArray last = path.mid(path.lastIndexOf('.') + 1);
    const QByteArray word = last.startsWith('\\') ? last.mid(1) : last;
    if (word.isEmpty())
        return ofDevice(device);
    return {word, validName(device.kernelName)};
}
