// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/TavRegistryEntry.h"

#include <QFutureWatcher>
#include <span>

class DeviceNames;
class TavDataStore;

// Looks up the names of the devices of a store, all that have none yet together. Main thread only.
class DeviceNameLookup
{
public:
    explicit DeviceNameLookup(TavDataStore &store); // which owns this
    ~DeviceNameLookup();

    // In the background. Posts deviceNamesFound if there were any. Does nothing without a database.
    void start();
    static void run(TavDataStore &store); // blocks
    static void run(const TavDataStore &store, std::span<TavRegistryEntry *const> entries);

private:
    using Found = std::vector<DeviceNameRef>;
    struct Request
    {
        std::vector<std::weak_ptr<TavRegistryEntry>> entries;
        std::vector<RegistryValue> properties; // of the entries
    };

    static Request requestOf(const TavDataStore &store);
    static void add(const EntryRef &entry, Request &request);
    static Found find(DeviceNames &names, const std::vector<RegistryValue> &properties);
    static bool install(const Request &request, const Found &found); // whether any device has one
    void finished();

    TavDataStore &store_;
    Request request_; // that is running
    bool isRunning_ = false;
    bool isAskedAgain_ = false; // while running
    QFutureWatcher<Found> watcher_;
    std::shared_ptr<void> life_ = std::make_shared<char>();
};
