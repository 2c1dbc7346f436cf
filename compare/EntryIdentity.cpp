// SPDX-License-Identifier: Apache-2.0
#include "compare/EntryIdentity.h"

#include "compare/VolatileAttributes.h"

namespace {
using namespace EntryIdentity;

const QString separator = QStringLiteral("\n");

// Not what firmware writes where it knows nothing.
bool isMeaningful(const QString &text)
{
    static const QRegularExpression nothing(
        QStringLiteral("^([0:. fF-]*|none|n/?a|null|unknown|default string|not specified|"
                       "to be filled by o\\.e\\.m\\.|system serial number|0x0+)$"),
        QRegularExpression::CaseInsensitiveOption);
    return !nothing.match(text.trimmed()).hasMatch();
}

// Addresses that a bus gives by place, which the kernel uses as names.
QString busAddress(const TavRegistryEntry &entry)
{
    static const QSet<QString> buses{QStringLiteral("pci"),  QStringLiteral("usb"),
                                     QStringLiteral("sdio"), QStringLiteral("mmc"),
                                     QStringLiteral("ccw"),  QStringLiteral("acpi"),
                                     QStringLiteral("pnp"),  QStringLiteral("platform")};
    const QString subsystem = subsystemOf(entry);
    const QString path = entry.kernelPath();
    return buses.contains(subsystem) ? subsystem + u'/' + path.sliced(path.lastIndexOf(u'/') + 1)
                                     : QString();
}

QString firstOf(const TavRegistryEntry &entry, std::initializer_list<QStringView> keys)
{
    for (const QStringView key : keys) {
        const QString text = propertyText(entry, key);
        if (!text.isEmpty() && isMeaningful(text))
            return text;
    }
    return {};
}

QString identityText(const TavRegistryEntry &entry, Kind kind)
{
    switch (kind) {
    case Kind::BusAddress:
        return busAddress(entry);
    case Kind::Serial:
        return firstOf(entry, {u"serial", u"serial_number", u"uniq", u"cid"});
    case Kind::Mac:
        return subsystemOf(entry) == QLatin1String("net") ? firstOf(entry, {u"address"})
                                                          : QString();
    case Kind::Wwn:
        return firstOf(entry,
                       {u"wwid", u"device/wwid", u"eui", u"nguid", u"port_name", u"sas_address"});
    case Kind::Uuid:
        return firstOf(entry, {u"uuid", u"dm/uuid", u"md/uuid", u"unique_id"});
    case Kind::DmiHandle:
        return subsystemOf(entry) == QLatin1String("dmi") ? firstOf(entry, {u"handle"}) : QString();
    }
    return {};
}
} // namespace

QString EntryIdentity::propertyText(const TavRegistryEntry &entry, QStringView path)
{
    if (!entry.table().isNone()) {
        const RegistryValue *value = &entry.table();
        for (const QStringView key : path.split(u'/'))
            value = &value->member(key);
        return value->stringView().toString();
    }
    const TavRegistryProperty *node = entry.properties();
    for (const QStringView key : path.split(u'/'))
        node = node && node->isCollection() ? node->childWithName(key.toString()) : nullptr;
    return node ? node->stringView().toString() : QString();
}

QString EntryIdentity::subsystemOf(const TavRegistryEntry &entry)
{
    const QString link = propertyText(entry, u"subsystem");
    return link.sliced(link.lastIndexOf(u'/') + 1);
}

QString EntryIdentity::subsystemOrClass(const TavRegistryEntry &entry)
{
    const QString subsystem = subsystemOf(entry);
    return subsystem.isEmpty() ? entry.DxcoreClass() : subsystem;
}

QString EntryIdentity::textOf(const TavRegistryEntry &entry, Kind kind)
{
    const QString text = identityText(entry, kind);
    return text.isEmpty() ? QString() : entry.DxcoreClass() + separator + text;
}

QString EntryIdentity::likeness(const TavRegistryEntry &entry,
                                const VolatileAttributes &volatileAttributes)
{
    const QString modalias = propertyText(entry, u"modalias");
    const bool isNumbered = volatileAttributes.isNumberedByDiscovery(subsystemOf(entry));
    if (modalias.isEmpty() && !isNumbered)
        return {};
    QStringList parts{entry.DxcoreClass(), modalias};
    if (isNumbered)
        parts.append(nameWithoutNumber(entry.facts().name));
    for (const Kind kind : kinds) {
        if (kind != Kind::BusAddress)
            parts.append(identityText(entry, kind));
    }
    return parts.join(separator);
}

QString EntryIdentity::nameWithoutNumber(const QString &name)
{
    static const QRegularExpression instance(QStringLiteral("\\.[0-9A-F]{4}$")); // of HID devices
    static const QRegularExpression number(QStringLiteral("[0-9]+"));
    if (const auto match = instance.match(name); match.hasMatch())
        return name.first(match.capturedStart());
    const auto match = number.match(name);
    return match.hasMatch() ? QString(name).remove(match.capturedStart(), match.capturedLength())
                            : name;
}
