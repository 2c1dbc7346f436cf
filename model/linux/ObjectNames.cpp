// SPDX-License-Identifier: Apache-2.0
#include "model/linux/ObjectNames.h"

#include "model/linux/PciClass.h"

#include <QRegularExpression>

namespace {
constexpr qsizetype maxNameSize = 127;

QByteArray cut(QByteArray utf8, qsizetype maxSize = maxNameSize)
{
    if (utf8.size() <= maxSize)
        return utf8;
    qsizetype end = maxSize;
    while (end > 0 && (static_cast<unsigned char>(utf8[end]) & 0xc0) == 0x80)
        --end;
    utf8.truncate(end);
    return utf8;
}

QByteArray validName(const QByteArray &kernelName)
{
    return ObjectNames::validUtf8(kernelName, maxNameSize);
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

NameAndLocation ofUsb(const HostObject &device, const QByteArray &kernelName)
{
    const qsizetype colon = kernelName.indexOf(':');
    if (colon >= 0)
        return {textOr(device, u"interface", "interface"), kernelName.mid(colon + 1)};
    return {textOr(device, u"product", usbNumbers(device)), kernelName};
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

QByteArray ObjectNames::validUtf8(const QByteArray &kernelName, qsizetype maxSize)
{
    return cut(QString::fromUtf8(kernelName).toUtf8(), maxSize);
}

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
        return {PciClass(device).word(), name};
    if (subsystem == "usb")
        return ofUsb(device, name);
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
