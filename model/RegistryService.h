// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/DeviceNodes.h"
#include "model/ModuleCatalog.h"
#include "model/ObjectSample.h"
#include "platform/host/HostInformation.h"

#include <array>
#include <functional>
#include <memory>
#include <span>

class DeviceNames;
class RegistryEventFeed;

using RegistryObject = quint32; // a handle, owned by its receiver until released; 0: none
using RegistryIterator = quint32;
using RegistryNotification = quint32;
using NotificationPort = quint32;
using MessagePort = quint32;
using PowerConnection = quint32;

enum class RegistryStatus : quint32 {
    Success = 0,
    Failed = 0xe00002bc,
    Unsupported = 0xe00002c7,
    NotFound = 0xe00002f0, // the entry has no location in the plane; not an error
};

// UTF-8, NUL-terminated.
using RegistryName = std::array<char, 128>;

enum RegistryServiceState : quint64 {
    ServiceInactive = 1,
    ServiceRegistered = 2,
    ServiceMatched = 4,
};

enum PowerMessage : quint32 {
    CanSystemSleep = 0xe0000270,
    SystemWillSleep = 0xe0000280,
    SystemHasPoweredOn = 0xe0000300,
};

// A message received on a message port, to be passed to the dispatcher unchanged.
struct RegistryMessage
{
    MessagePort port = 0;
    std::shared_ptr<const void> content;
};

// Access to the host's device registry. The caller must release every handle and iterator that an
// operation returns. Outputs stay unchanged unless the status is success. Main thread only.
class RegistryService
{
public:
    virtual ~RegistryService();

    // Rereads the host: later calls answer from its present state. Blocks. Announces terminations
    // that it finds first. False when the user cancels: later calls then answer from the previous
    // state, or not at all before the first reading.
    virtual bool prepare() { return true; }
    // The same without blocking: calls ready on the main run loop, in its default mode, after a
    // reading that began after this call. Until then calls answer from the previous state.
    virtual void prepareAsync(std::function<void()> ready)
    {
        prepare();
        ready();
    }
    // Like prepare; also rereads what is too costly to read for every object, for this one.
    virtual bool prepareObject(RegistryObject) { return true; }
    // Whether an attribute, by its path below the object's directory, may be read when the user
    // asks for it.
    virtual bool mayReadOnRequest(RegistryObject, const QString & /*attribute*/) { return false; }
    // Reads it without blocking: calls ready once, later, on the main run loop in its default mode,
    // when copyProperties has the value or the reason why there is none.
    virtual void readOnRequest(RegistryObject, const QString & /*attribute*/,
                               std::function<void()> /*ready*/)
    {}
    // Where a reading takes in the structure only: reads all properties of these objects, too.
    // Blocks. Announces nothing and is no reading of its own.
    virtual void readWhole(std::span<const RegistryObject>) {}
    // Reads attributes of one object now without blocking: calls ready once, later, on the main run
    // loop in its default mode. Attributes that did not answer are not tried again. Everything else
    // that this service answers stays as it was.
    virtual void sample(const ObjectSample::Request & /*request*/,
                        std::function<void(const ObjectSample &)> /*ready*/)
    {}
    // Like prepare; also retries what did not answer before.
    virtual bool retryWhatDidNotAnswer() { return prepare(); }

    // Counts the readings of the whole registry, from 1; 0: not supported.
    virtual quint64 readingNumber() const { return 0; }
    // Whether the object and the list of its children are the same as right after that reading.
    virtual bool isUnchangedSince(RegistryObject, quint64 /*reading*/) { return false; }

    // The modules of the machine; null: they are not known.
    virtual std::shared_ptr<const ModuleCatalog> moduleCatalog() { return nullptr; }
    // Its device nodes; null likewise.
    virtual std::shared_ptr<const DeviceNodes> deviceNodes() { return nullptr; }

    // Of the machine that the registry describes.
    virtual HostInformation hostInformation() { return HostInformation::ofThisMachine(); }

    virtual RegistryObject rootEntry() = 0;
    virtual RegistryObject entryFromPath(const QString &path) = 0;

    virtual RegistryStatus childIterator(RegistryObject object, const char *plane,
                                         RegistryIterator &iterator) = 0;
    virtual RegistryObject iteratorNext(RegistryIterator iterator) = 0; // 0 at the end
    virtual void releaseIterator(RegistryIterator iterator) = 0;

    // Null plane: the name or location in no particular plane.
    virtual RegistryStatus nameInPlane(RegistryObject object, const char *plane,
                                       RegistryName &name) = 0;
    virtual RegistryStatus locationInPlane(RegistryObject object, const char *plane,
                                           RegistryName &location) = 0;
    virtual RegistryStatus name(RegistryObject object, RegistryName &name)
    {
        return nameInPlane(object, nullptr, name);
    }

    virtual QString copyClassName(RegistryObject object) = 0; // null when there is none
    virtual bool hasSuperclassLookup() const { return true; }
    virtual QString copySuperclassName(const QString &className) = 0;           // null at the top
    virtual QString copyBundleIdentifierForClass(const QString &className) = 0; // null for none
    virtual bool conformsTo(RegistryObject object, const QString &className) = 0;

    virtual bool hasEntryIDs() const { return true; }
    virtual RegistryStatus entryID(RegistryObject object, quint64 &id) = 0;
    virtual bool objectsEqual(RegistryObject a, RegistryObject b) = 0;

    virtual RegistryStatus copyProperties(RegistryObject object, RegistryValue &properties) = 0;
    virtual RegistryValue copyProperty(RegistryObject object, const QString &key) = 0;

    virtual RegistryStatus serviceState(RegistryObject object, quint64 &state) = 0;
    virtual RegistryStatus busyState(RegistryObject object, quint32 &busyCount) = 0;
    virtual quint32 retainCount(RegistryObject object) = 0;

    // The object's path in the kernel's own tree, such as "/sys/bus/pci"; null: none.
    virtual QString kernelPath(RegistryObject) { return {}; }

    virtual void retain(RegistryObject object) = 0;
    virtual void release(RegistryObject object) = 0;

    // The file of the driver bundle, or null.
    virtual QString bundleURLForIdentifier(const QString &bundleID) = 0;
    // The hardware databases of the machine that runs the program; null: none.
    virtual std::shared_ptr<DeviceNames> deviceNames() { return nullptr; }

    // Every event, while a notification port is open; null: not supported.
    virtual RegistryEventFeed *eventFeed() { return nullptr; }

    // Notifications. Without support: Unsupported, or port 0.
    using MessageHandler = std::function<void(const RegistryMessage &)>;
    using MatchingCallback = std::function<void(RegistryIterator)>;
    using InterestCallback =
        std::function<void(RegistryObject, quint32 messageType, quintptr argument)>;
    using PowerCallback = std::function<void(quint32 messageType, quintptr notificationID)>;

    virtual NotificationPort createNotificationPort() { return 0; }
    virtual void destroyNotificationPort(NotificationPort) {} // and every registration on it
    virtual MessagePort messagePort(NotificationPort) { return 0; }
    // Calls the handler on the main run loop, in its default mode.
    virtual bool addToRunLoop(MessagePort, MessageHandler) { return false; }
    virtual void removeFromRunLoop(MessagePort) {}
    // Calls the callback that the message is addressed to.
    virtual void dispatchMessage(NotificationPort, const RegistryMessage &) {}

    // Types: "DxServicePublish", "DxServiceMatched", "DxServiceTerminate". The iterator returns the
    // objects concerned. Draining it arms the notification: drain it immediately after registering
    // and in every callback; until then new objects wait in the iterator.
    virtual RegistryStatus addMatchingNotification(NotificationPort, const char * /*type*/,
                                                   const QString & /*className*/, MatchingCallback,
                                                   RegistryIterator &)
    {
        return RegistryStatus::Unsupported;
    }
    // Types: "DxBusyInterest", with the busy count as argument, and "DxGeneralInterest".
    virtual RegistryStatus addInterestNotification(NotificationPort, RegistryObject,
                                                   const char * /*type*/, InterestCallback,
                                                   RegistryNotification &)
    {
        return RegistryStatus::Unsupported;
    }
    virtual void releaseNotification(RegistryNotification) {}

    // Power messages arrive on the port, which the caller must destroy. The machine does not go to
    // sleep before allowPowerChange.
    virtual PowerConnection registerForSystemPower(PowerCallback, NotificationPort &,
                                                   RegistryNotification &)
    {
        return 0;
    }
    virtual void deregisterForSystemPower(RegistryNotification) {}
    virtual void allowPowerChange(PowerConnection, quintptr /*notificationID*/) {}
    virtual void releasePowerConnection(PowerConnection) {}
};
