// SPDX-License-Identifier: Apache-2.0
#include "store/EntryLocator.h"

#include <algorithm>

namespace {
const QString sysfs = QStringLiteral("/sys");
const QString devices = QStringLiteral("/dev/");

RegistryValue property(const TavRegistryEntry &entry, const QString &key)
{
    if (!entry.table().isNone())
        return entry.table().member(key);
    const TavRegistryProperty *const tree = entry.properties();
    const TavRegistryProperty *const node = tree ? tree->childWithName(key) : nullptr;
    return node ? node->value() : RegistryValue();
}

QString text(const TavRegistryEntry &entry, const QString &key)
{
    return property(entry, key).toString();
}

RegistryValue property(const TavRegistryEntry &entry, const QString &key, const QString &member)
{
    if (!entry.table().isNone())
        return entry.table().member(key).member(member);
    const TavRegistryProperty *const tree = entry.properties();
    const TavRegistryProperty *const node = tree ? tree->childWithName(key) : nullptr;
    const TavRegistryProperty *const below = node ? node->childWithName(member) : nullptr;
    return below ? below->value() : RegistryValue();
}

QString text(const TavRegistryEntry &entry, const QString &key, const QString &member)
{
    return property(entry, key, member).toString();
}

// Such as "8:0"; null: no device node.
QString deviceNumber(const TavRegistryEntry &entry)
{
    const RegistryValue major = property(entry, QStringLiteral("uevent"), QStringLiteral("MAJOR"));
    const RegistryValue minor = property(entry, QStringLiteral("uevent"), QStringLiteral("MINOR"));
    return major.isNone() || minor.isNone()
               ? text(entry, QStringLiteral("dev"))
               : QString::number(major.numberBits()) + u':' + QString::number(minor.numberBits());
}

// The udev database's other names of the device node, such as "disk/by-id/…".
bool hasNodeLink(const TavRegistryEntry &entry, const QString &name)
{
    const RegistryValue links =
        property(entry, QStringLiteral("udev")).member(QStringLiteral("links"));
    return std::any_of(links.elements().begin(), links.elements().end(),
                       [&](const RegistryValue &link) { return link.toString() == name; });
}

QString modaliasOf(const TavRegistryEntry &entry)
{
    const QString own = text(entry, QStringLiteral("modalias"));
    return own.isEmpty() ? text(entry, QStringLiteral("uevent"), QStringLiteral("MODALIAS")) : own;
}

std::optional<quint64> registryID(const QString &text)
{
    bool isNumber = false;
    const quint64 number = text.toULongLong(&isNumber, text.startsWith(u"0x") ? 16 : 10);
    return isNumber ? std::optional(number) : std::nullopt;
}

QString lastOf(const QString &path)
{
    return path.sliced(path.lastIndexOf(u'/') + 1);
}
} // namespace

EntryLocator::EntryLocator(std::span<const EntryRef> entries)
    : entries_(entries)
{
    byPath_.reserve(static_cast<qsizetype>(entries.size()));
    for (const EntryRef &entry : entries) {
        const QString path = entry->kernelPath();
        // One that is gone may have the path of one that came later.
        if (!path.isEmpty() && (!entry->hasTerminationDate() || !byPath_.contains(path)))
            byPath_.insert(path, entry.get());
    }
}

TavRegistryEntry *EntryLocator::atLink(const QString &link) const
{
    const bool mayBePath = link.size() < EntryRecord::maxKernelPath && link.contains(u'/');
    return mayBePath ? atKernelPath(sysfs + u'/' + link) : nullptr;
}

QString EntryLocator::kernelName(const TavRegistryEntry &entry)
{
    const QString path = entry.kernelPath();
    return path.isEmpty() ? QString() : lastOf(path);
}

QString EntryLocator::deviceNode(const TavRegistryEntry &entry)
{
    const QString name = text(entry, QStringLiteral("uevent"), QStringLiteral("DEVNAME"));
    return name.isEmpty() ? QString() : devices + name;
}

std::vector<TavRegistryEntry *> EntryLocator::find(const QString &text) const
{
    const QString name = text.trimmed();
    if (name.isEmpty())
        return {};
    if (name != sysfs && !name.startsWith(sysfs + u'/'))
        return named(name);
    TavRegistryEntry *const entry = atPathThroughLinks(name);
    return entry ? std::vector{entry} : std::vector<TavRegistryEntry *>();
}

std::vector<TavRegistryEntry *> EntryLocator::named(const QString &text) const
{
    std::vector<TavRegistryEntry *> byName;
    std::vector<TavRegistryEntry *> byOthers;
    const QString inFirstDomain = QStringLiteral("0000:") + text; // as lspci writes addresses
    const QString node = text.startsWith(devices) ? text.sliced(devices.size()) : QString();
    const std::optional<quint64> tag = registryID(text);
    for (const EntryRef &entry : entries_) {
        const QString its = kernelName(*entry);
        if (its == text || its == inFirstDomain)
            byName.push_back(entry.get());
        else if ((tag && entry->entryTag() == *tag) ||
                 (!node.isEmpty() && (deviceNode(*entry) == text || hasNodeLink(*entry, node))) ||
                 (text.contains(u':') && modaliasOf(*entry) == text))
            byOthers.push_back(entry.get());
    }
    byName.insert(byName.end(), byOthers.begin(), byOthers.end());
    return byName;
}

TavRegistryEntry *EntryLocator::atPathThroughLinks(const QString &path) const
{
    const auto [entry, below] = placeOf(path);
    // An attribute leads to the object that has it.
    const bool isFound = entry && (below.isEmpty() || !property(*entry, below).isNone());
    return isFound ? entry : nullptr;
}

TavRegistryEntry *EntryLocator::possibleOwner(const QString &path) const
{
    const QString trimmed = path.trimmed();
    return trimmed.startsWith(sysfs + u'/') ? placeOf(trimmed).nearest : nullptr;
}

// Follows the path from folder to folder, as the kernel does, with what the registry has of them.
EntryLocator::Place EntryLocator::placeOf(const QString &path) const
{
    QString folder = sysfs;
    Place place;
    for (const QString &name : path.sliced(sysfs.size()).split(u'/', Qt::SkipEmptyParts)) {
        folder = step(folder, name);
        if (TavRegistryEntry *const entry = atKernelPath(folder))
            place = {entry, {}};
        else if (place.below.isEmpty())
            place.below = name;
    }
    return place;
}

QString EntryLocator::step(const QString &folder, const QString &name) const
{
    if (name == u".")
        return folder;
    if (name == u"..")
        return folder.left(folder.lastIndexOf(u'/'));
    const QString direct = folder + u'/' + name;
    if (atKernelPath(direct))
        return direct;
    const TavRegistryEntry *entry = atKernelPath(folder);
    // A binding is the device's link to its driver.
    if (entry && entry->inheritance().contains(QStringLiteral("DxBinding")))
        entry = atLink(text(*entry, QStringLiteral("driver")));
    const TavRegistryEntry *target = entry ? atLink(text(*entry, name)) : nullptr;
    if (!target)
        target = memberOf(folder, name);
    return target ? target->kernelPath() : direct;
}

// The devices that a class, bus, driver or table of device numbers lists.
TavRegistryEntry *EntryLocator::memberOf(const QString &folder, const QString &name) const
{
    if (!folder.startsWith(sysfs + u'/'))
        return nullptr;
    const QStringList parts = folder.sliced(sysfs.size()).split(u'/', Qt::SkipEmptyParts);
    QString key = QStringLiteral("subsystem");
    QString value = parts.mid(0, 2).join(u'/');
    if (folder == u"/sys/block") {
        value = QStringLiteral("class/block");
    } else if (parts[0] == u"bus" && parts.value(2) == u"drivers" && parts.size() == 4) {
        key = QStringLiteral("driver");
        value = parts.join(u'/');
    } else if (parts[0] == u"dev") {
        value = name;
    } else if (parts[0] != u"class" && parts.value(2) != u"devices") {
        return nullptr;
    }
    const bool isByNumber = parts[0] == u"dev";
    const bool isBlock = parts.value(1) == u"block";
    const auto found = std::find_if(entries_.begin(), entries_.end(), [&](const EntryRef &entry) {
        if (isByNumber)
            return deviceNumber(*entry) == value &&
                   isBlock == (text(*entry, QStringLiteral("subsystem")) == u"class/block");
        return kernelName(*entry) == name && text(*entry, key) == value &&
               !entry->hasTerminationDate();
    });
    return found == entries_.end() ? nullptr : found->get();
}

QStringList EntryLocator::candidates(const QString &text) const
{
    QStringList found;
    const bool isPath = text.startsWith(u'/');
    const bool isModalias = text.contains(u':');
    const bool isID = registryID(text).has_value();
    const qsizetype folder = text.lastIndexOf(u'/');
    for (const EntryRef &entry : entries_) {
        if (found.size() >= maxCandidates)
            break;
        const QString path = entry->kernelPath();
        const QString node = isPath ? deviceNode(*entry) : QString();
        if (isPath && path.startsWith(text) && path.indexOf(u'/', folder + 1) < 0)
            found.append(path);
        if (isPath && node.startsWith(text))
            found.append(node);
        if (isPath)
            continue;
        const QString tag = QString::number(entry->entryTag());
        for (const QString &name :
             {lastOf(path), isModalias ? modaliasOf(*entry) : QString(), isID ? tag : QString()}) {
            if (!name.isEmpty() && name.startsWith(text))
                found.append(name);
        }
    }
    return found;
}
