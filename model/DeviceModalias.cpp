// SPDX-License-Identifier: Apache-2.0
#include "model/DeviceModalias.h"

#include "model/TavRegistryProperty.h"

namespace {
constexpr QLatin1String keys[] = {
    QLatin1String("modalias"),        QLatin1String("id"),
    QLatin1String("subsystem"),       QLatin1String("uevent"),
    QLatin1String("idVendor"),        QLatin1String("idProduct"),
    QLatin1String("bcdDevice"),       QLatin1String("bDeviceClass"),
    QLatin1String("bDeviceSubClass"), QLatin1String("bDeviceProtocol"),
};

bool isNumber(const RegistryValue &value)
{
    return value.type() == RegistryValue::Type::Number;
}

// A byte that the kernel writes as two hexadecimal digits without prefix. Where both are decimal
// digits, it was read as a decimal number.
QString byteOf(const RegistryValue &properties, QStringView key)
{
    const RegistryValue &value = properties.member(key);
    const QString digits = isNumber(value) ? QString::number(value.numberBits()) : value.toString();
    return digits.rightJustified(2, u'0').toUpper();
}

// A USB device has no modalias of its own, only its interfaces do.
QString ofUsbDevice(const RegistryValue &properties)
{
    const RegistryValue &vendor = properties.member(u"idVendor");
    const RegistryValue &product = properties.member(u"idProduct");
    if (!isNumber(vendor) || !isNumber(product))
        return {};
    return QString::asprintf("usb:v%04Xp%04Xd%04X", static_cast<unsigned>(vendor.numberBits()),
                             static_cast<unsigned>(product.numberBits()),
                             static_cast<unsigned>(properties.member(u"bcdDevice").numberBits())) +
           QStringLiteral("dc%1dsc%2dp%3")
               .arg(byteOf(properties, u"bDeviceClass"), byteOf(properties, u"bDeviceSubClass"),
                    byteOf(properties, u"bDeviceProtocol"));
}
// Nor has a PNP device, but its IDs are those of ACPI.
QString ofPnpDevice(const RegistryValue &properties)
{
    const RegistryValue &id = properties.member(u"id");
    const QString text = id.elements().empty() ? id.toString() : id.elements().front().toString();
    const bool isPnp = properties.member(u"subsystem").stringView() == QLatin1String("bus/pnp");
    return isPnp && !text.isEmpty() ? QStringLiteral("acpi:%1:").arg(text.toUpper()) : QString();
}
} // namespace

QString DeviceModalias::of(const RegistryValue &properties)
{
    for (const RegistryValue &value :
         {properties.member(u"modalias"), properties.member(u"uevent").member(u"MODALIAS")}) {
        if (const QString modalias = value.toString(); !modalias.isEmpty())
            return modalias;
    }
    const QString usb = ofUsbDevice(properties);
    return usb.isNull() ? ofPnpDevice(properties) : usb;
}

RegistryValue DeviceModalias::propertiesOf(const TavRegistryProperty &tree)
{
    RegistryValue::Members members;
    for (const QLatin1String key : keys) {
        const TavRegistryProperty *const node = tree.childWithName(key);
        const TavRegistryProperty *const alias =
            node ? node->childWithName(QStringLiteral("MODALIAS")) : nullptr;
        if (alias)
            members.push_back({CompactString(QString(key)),
                               RegistryValue::dictionary(
                                   {{CompactString(QStringLiteral("MODALIAS")), alias->value()}})});
        else if (node && !node->isCollection())
            members.push_back({CompactString(QString(key)), node->value()});
    }
    return RegistryValue::dictionary(std::move(members));
}
