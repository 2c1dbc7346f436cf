// SPDX-License-Identifier: Apache-2.0
#include "display/export/EntryFactTexts.h"

#include "store/EntryLocator.h"

namespace {
using Fact = EntryFactTexts::Fact;

QString dateText(const QDateTime &date)
{
    return date.isNull() ? QString() : date.toLocalTime().toString(Qt::ISODate);
}

// A plane in which the entry is, preferably the given one.
QString planeOf(const TavRegistryEntry &entry, const QString &plane)
{
    if (entry.isRegistryRoot() || !entry.parentsInPlane(plane).empty())
        return plane;
    for (const auto &item : entry.facts().parentsInPlanes) {
        if (!item.value.entries().empty())
            return item.plane();
    }
    return plane;
}
} // namespace

std::span<const Fact> EntryFactTexts::all()
{
    using enum Fact;
    static constexpr Fact facts[] = {
        Path,    Name,  Device,    Class,       Inheritance, Bundle,     KernelPath, DeviceNode,
        Service, State, BusyCount, RetainCount, Identifier,  Discovered, Updated,    Terminated};
    return facts;
}

QString EntryFactTexts::title(Fact fact)
{
    switch (fact) {
    case Fact::Path:
        return tr("Path");
    case Fact::Name:
        return tr("Name");
    case Fact::Device:
        return tr("Device");
    case Fact::Class:
        return tr("Class");
    case Fact::Inheritance:
        return tr("Inheritance");
    case Fact::Bundle:
        return tr("Bundle");
    case Fact::KernelPath:
        return tr("Kernel path");
    case Fact::DeviceNode:
        return tr("Device node");
    case Fact::Service:
        return tr("Service");
    case Fact::State:
        return tr("State");
    case Fact::BusyCount:
        return tr("Busy count");
    case Fact::RetainCount:
        return tr("Retain count");
    case Fact::Identifier:
        return tr("Registry ID");
    case Fact::Discovered:
        return tr("Discovered");
    case Fact::Updated:
        return tr("Updated");
    case Fact::Terminated:
        return tr("Terminated");
    }
    return {};
}

QString EntryFactTexts::text(Fact fact, const TavRegistryEntry &entry, const QString &plane)
{
    switch (fact) {
    case Fact::Path:
        return path(entry, planeOf(entry, plane));
    case Fact::Name:
        return entry.nameAtLocationInPlane(planeOf(entry, plane));
    case Fact::Device:
        return entry.deviceName() ? entry.deviceName()->description() : QString();
    case Fact::Class:
        return entry.DxcoreClass();
    case Fact::Inheritance:
        return entry.inheritanceString();
    case Fact::Bundle:
        return entry.bundleID();
    case Fact::KernelPath:
        return entry.kernelPath();
    case Fact::DeviceNode:
        return EntryLocator::deviceNode(entry);
    case Fact::Service:
        return service(entry);
    case Fact::State:
        return state(entry);
    case Fact::BusyCount:
        return entry.conformsToDxService() ? QString::number(entry.busyCount()) : QString();
    case Fact::RetainCount:
        return QString::number(entry.kernelRetainCount());
    case Fact::Identifier:
        return QString::number(entry.entryTag());
    case Fact::Discovered:
        return dateText(entry.dateDiscovered());
    case Fact::Updated:
        return dateText(entry.dateLastUpdated());
    case Fact::Terminated:
        return dateText(entry.dateTerminated());
    }
    return {};
}

// As the registry's paths are written: without the entry at the top, below the root.
QString EntryFactTexts::path(const TavRegistryEntry &entry, const QString &plane)
{
    QStringList names;
    for (const TavRegistryEntry *at = &entry; !at->parentsInPlane(plane).empty();
         at = at->parentsInPlane(plane).front())
        names.prepend(at->nameAtLocationInPlane(plane));
    if (names.isEmpty())
        return plane + u':';
    names.front() = plane + u':';
    return names.size() == 1 ? names.front() + u'/' : names.join(u'/');
}

QString EntryFactTexts::service(const TavRegistryEntry &entry)
{
    QStringList words;
    if (!entry.conformsToDxService())
        return {};
    if (entry.isRegistered())
        words.append(tr("registered"));
    if (entry.isMatched())
        words.append(tr("matched"));
    if (entry.isActive())
        words.append(tr("active"));
    return words.isEmpty() ? tr("inactive") : words.join(QLatin1String(", "));
}

QString EntryFactTexts::state(const TavRegistryEntry &entry)
{
    switch (entry.registryState()) {
    case RegistryStateNew:
        return tr("new");
    case RegistryStateTerminated:
        return tr("terminated");
    default:
        return {};
    }
}
