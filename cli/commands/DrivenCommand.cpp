// SPDX-License-Identifier: Apache-2.0
#include "cli/commands/DrivenCommand.h"

#include "cli/CommandInput.h"
#include "cli/EntrySummary.h"
#include "cli/NearestText.h"
#include "cli/RegistryNames.h"
#include "cli/RegistrySource.h"
#include "cli/TextTable.h"
#include "platform/text/NaturalOrder.h"

using namespace RegistryNames;

namespace {
// A module's file has underscores where users may write hyphens.
QString moduleName(const QString &name)
{
    return QString(name).replace(u'-', u'_');
}

// "pci" for "/sys/bus/pci/drivers/e1000e"
QString busOf(const TavRegistryEntry &driver)
{
    return driver.kernelPath().section(u'/', 3, 3);
}
} // namespace

struct DrivenCommand::Driven
{
    const TavRegistryEntry *device;
    QString path;
    QString driver;
    QString bus;
};

CommandDescription DrivenCommand::description() const
{
    if (by_ == By::Driver)
        return {.name = QStringLiteral("driver"),
                .arguments = QStringLiteral("NAME"),
                .argumentKind = ArgumentKind::Driver,
                .minArguments = 1,
                .maxArguments = 1,
                .summary = tr("List the devices that a driver is bound to"),
                .details = tr("The exit code is 1 when it drives none."),
                .examples = {{QStringLiteral("driver virtio_net"),
                              tr("The network interfaces of a virtual machine")}}};
    return {.name = QStringLiteral("module"),
            .arguments = QStringLiteral("NAME"),
            .argumentKind = ArgumentKind::Module,
            .minArguments = 1,
            .maxArguments = 1,
            .summary = tr("List the devices that the drivers of a kernel module are bound to"),
            .details = tr("The exit code is 1 when they drive none."),
            .examples = {{QStringLiteral("module e1000e"), tr("The devices of a network driver")}}};
}

DrivenCommand::Entries DrivenCommand::drivers(const TavDataStore &store, const QString &name) const
{
    const bool isDriver = by_ == By::Driver;
    const QString wanted = isDriver ? name : moduleName(name);
    Entries drivers;
    QStringList others;
    bool isKnown = false;
    for (const EntryRef &entry : store.registryEntries()) {
        if (entry->DxcoreClass() != (isDriver ? driverClass : moduleClass))
            continue;
        const QString its = EntryLocator::kernelName(*entry);
        others.append(its);
        if (its != wanted)
            continue;
        isKnown = true;
        if (isDriver) {
            drivers.push_back(entry.get());
            continue;
        }
        for (TavRegistryEntry *const child : entry->childrenInPlane(modulePlane)) {
            if (child->DxcoreClass() == driverClass)
                drivers.push_back(child);
        }
    }
    if (isKnown)
        return drivers;
    const QString nearest = NearestText::among(others, wanted);
    const QString problem =
        isDriver ? tr("There is no driver %1").arg(name) : tr("There is no module %1").arg(name);
    throw CommandError{nearest.isNull() ? problem
                                        : tr("%1. The nearest is %2").arg(problem, nearest)};
}

std::vector<DrivenCommand::Driven> DrivenCommand::devices(const TavDataStore &store,
                                                          const QString &name) const
{
    std::vector<Driven> devices;
    for (const TavRegistryEntry *const driver : drivers(store, name)) {
        for (const TavRegistryEntry *const binding : driver->childrenInPlane(driverPlane)) {
            const auto &parents = binding->parentsInPlane(servicePlane);
            if (!parents.empty())
                devices.push_back({parents.front(),
                                   EntrySummary::path(*parents.front(), servicePlane),
                                   EntryLocator::kernelName(*driver), busOf(*driver)});
        }
    }
    std::sort(devices.begin(), devices.end(), [](const Driven &a, const Driven &b) {
        return compareNaturally(a.path, b.path) < 0;
    });
    return devices;
}

ExitCode DrivenCommand::run(const CommandInput &input, RegistrySource &source,
                            CommandOutput &output)
{
    TavDataStore &store = source.store(RegistrySource::Need::Structure);
    output.describe(store);
    TextTable table;
    const std::vector<Driven> devices = this->devices(store, input.arguments().constFirst());
    for (const auto &[device, path, driver, bus] : devices) {
        table.add({{path, TextRole::Name},
                   {QStringLiteral("%1 (%2)").arg(driver, bus), TextRole::Detail}});
        if (output.isText())
            continue;
        output.addResult([&, device = device, driver = driver, bus = bus](JsonWriter &json) {
            EntrySummary::addMembers(json, *device, servicePlane);
            json.member(QLatin1String("driver"), driver);
            json.member(QLatin1String("bus"), bus);
        });
    }
    if (output.isText())
        table.write(output);
    return devices.empty() ? ExitCode::Nothing : ExitCode::Found;
}
