// SPDX-License-Identifier: Apache-2.0
#include "store/DeviceNameLookup.h"

#include "model/DeviceModalias.h"
#include "model/DeviceNames.h"
#include "platform/runloop/NotificationCenter.h"
#include "platform/runloop/RunLoop.h"
#include "store/DataStoreNotifications.h"
#include "store/TavDataStore.h"

#include <QtConcurrentRun>

namespace {
std::shared_ptr<DeviceNames> namesFor(const TavDataStore &store)
{
    RegistryService *const service = store.bundleService();
    return service ? service->deviceNames() : nullptr;
}
} // namespace

DeviceNameLookup::DeviceNameLookup(TavDataStore &store)
    : store_(store)
{
    // Not while a search on another thread reads the names.
    QObject::connect(&watcher_, &QFutureWatcher<Found>::finished, &watcher_, [this] {
        RunLoop::main().performInDefaultMode(life_, [this] { finished(); });
    });
}

DeviceNameLookup::~DeviceNameLookup() = default;

DeviceNameLookup::Request DeviceNameLookup::requestOf(const TavDataStore &store)
{
    Request request;
    for (const EntryRef &entry : store.registryEntries())
        add(entry, request);
    return request;
}

void DeviceNameLookup::add(const EntryRef &entry, Request &request)
{
    if (entry->isDeviceNameLookedUp())
        return;
    request.entries.push_back(entry);
    const bool isOnlyTree = entry->table().isNone() && entry->properties();
    request.properties.push_back(isOnlyTree ? DeviceModalias::propertiesOf(*entry->properties())
                                            : entry->table());
}

DeviceNameLookup::Found DeviceNameLookup::find(DeviceNames &names,
                                               const std::vector<RegistryValue> &properties)
{
    Found found;
    found.reserve(properties.size());
    for (const RegistryValue &its : properties)
        found.push_back(names.nameOf(DeviceModalias::of(its)));
    return found;
}

bool DeviceNameLookup::install(const Request &request, const Found &found)
{
    bool hasAny = false;
    for (std::size_t i = 0; i < found.size(); ++i) {
        const EntryRef entry = request.entries[i].lock();
        if (!entry)
            continue;
        entry->setDeviceName(found[i]);
        hasAny = hasAny || entry->deviceName();
    }
    return hasAny;
}

void DeviceNameLookup::run(TavDataStore &store)
{
    if (const auto names = namesFor(store)) {
        const Request request = requestOf(store);
        install(request, find(*names, request.properties));
    }
}

void DeviceNameLookup::run(const TavDataStore &store, std::span<TavRegistryEntry *const> entries)
{
    const auto names = namesFor(store);
    if (!names)
        return;
    Request request;
    for (TavRegistryEntry *const entry : entries)
        add(entry->shared_from_this(), request);
    install(request, find(*names, request.properties));
}

void DeviceNameLookup::start()
{
    const auto names = namesFor(store_);
    if (!names)
        return;
    isAskedAgain_ = isRunning_;
    if (isRunning_)
        return;
    request_ = requestOf(store_);
    if (request_.entries.empty())
        return;
    isRunning_ = true;
    watcher_.setFuture(QtConcurrent::run(
        [names, properties = std::move(request_.properties)] { return find(*names, properties); }));
}

void DeviceNameLookup::finished()
{
    isRunning_ = false;
    const bool hasAny = install(std::exchange(request_, {}), watcher_.result());
    if (isAskedAgain_)
        start();
    // Last: an observer may close the document.
    if (hasAny)
        NotificationCenter::defaultCenter().post(DataStoreNotifications::deviceNamesFound, &store_);
}
