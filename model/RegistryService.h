#pragma once

#include "model/RegistryValue.h"
#include "platform/host/HostInformation.h"

#include <array>
#include <functional>

using RegistryObject = quint32; // a handle, held by whoever got it until released; 0 is no object
using RegistryIterator = quint32;
using RegistryNotification = quint32;
using NotificationPort = quint32;
using MessagePort = quint32;
using PowerConnection = quint32;

enum class RegistryStatus : quint32 {
    Success = 0,
    Failed = 0xe00002bc,
    Unsupported = 0xe00002c7,
    NotFound = 0xe00002f0, // the entry has no location in the plane; no failure
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

// A message that has arrived on a message port, to be handed to the dispatcher as it is.
struct RegistryMessage
{
    MessagePort port = 0;
    std::shared_ptr<const void> content;
};

// What the host tells of its device registry. Every handle and iterator that an operation returns
// is the caller's to release. A status other than success leaves the outputs as they were.
// Main thread only.
class RegistryService
{
public:
    virtual ~RegistryService();

    // Reads the host anew, so that what follows answers from its present state. Returns when done.
    // Terminations found by this are announced first. False when the user has cancelled it: what
    // follows answers from the former state, and nothing before the first one.
    virtual bool prepare() { return true; }
    // The same without waiting: ready is called when it is done, on the main run loop in its
    // default mode, and from a reading that began after this call. What follows answers from the
    // former state until then.
    virtual void prepareAsync(std::function<void()> ready)
    {
        prepare();
        ready();
    }
    // The same as prepare for one object, together with what is too costly to read for every one.
    virtual bool prepareObject(RegistryObject) { return true; }
    // Whether an attribute that is not read with all others may be read for the user, by its path
    // below the object's directory.
    virtual bool mayReadOnRequest(RegistryObject, const QString & /*attribute*/) { return false; }
    // Reads it without waiting: ready is called once, later, on the main run loop in its default
    // mode, when copyProperties has the value or the reason why there is none.
    virtual void readOnRequest(RegistryObject, const QString & /*attribute*/,
                               std::function<void()> /*ready*/)
    {}
    // The same as prepare, and tries again what did not answer before.
    virtual bool retryWhatDidNotAnswer() { return prepare(); }

    // Counts the readings of the whole registry, from 1; 0 when the service does not count them.
    virtual quint64 readingNumber() const { return 0; }
    // Whether the object and which children it has are as they were right after that reading.
    virtual bool isUnchangedSince(RegistryObject, quint64 /*reading*/) { return false; }

    // Of the machine whose registry it is.
    virtual HostInformation hostInformation() { return HostInformation::ofThisMachine(); }

    virtual RegistryObject rootEntry() = 0;
    virtual RegistryObject entryFromPath(const QString &path) = 0;

    virtual RegistryStatus childIterator(RegistryObject object, const char *plane,
                                         RegistryIterator &iterator) = 0;
    virtual RegistryObject iteratorNext(RegistryIterator iterator) = 0; // 0 at the end
    virtual void releaseIterator(RegistryIterator iterator) = 0;

    // A null plane asks for the name or location that stands for no plane in particular.
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

    virtual void retain(RegistryObject object) = 0;
    virtual void release(RegistryObject object) = 0;

    // The file that holds the driver bundle, or null.
    virtual QString bundleURLForIdentifier(const QString &bundleID) = 0;

    // Notifications. A service without them answers Unsupported, or 0 for a port.
    using MessageHandler = std::function<void(const RegistryMessage &)>;
    using MatchingCallback = std::function<void(RegistryIterator)>;
    using InterestCallback =
        std::function<void(RegistryObject, quint32 messageType, quintptr argument)>;
    using PowerCallback = std::function<void(quint32 messageType, quintptr notificationID)>;

    virtual NotificationPort createNotificationPort() { return 0; }
    virtual void destroyNotificationPort(NotificationPort) {} // with all that is registered on it
    virtual MessagePort messagePort(NotificationPort) { return 0; }
    // Messages reach the handler from the main run loop, in its default mode.
    virtual bool addToRunLoop(MessagePort, MessageHandler) { return false; }
    virtual void removeFromRunLoop(MessagePort) {}
    // Calls the callback that a message is for.
    virtual void dispatchMessage(NotificationPort, const RegistryMessage &) {}

    // Types: "DxServicePublish", "DxServiceMatched", "DxServiceTerminate". The iterator holds the
    // objects that the notification is about. It must be drained to arm the notification, at once
    // and in every callback; what comes while it is not armed waits in the iterator.
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

    // Power messages come by the port, which is the caller's to destroy. A sleep that is coming
    // waits for being allowed.
    virtual PowerConnection registerForSystemPower(PowerCallback, NotificationPort &,
                                                   RegistryNotification &)
    {
        return 0;
    }
    virtual void deregisterForSystemPower(RegistryNotification) {}
    virtual void allowPowerChange(PowerConnection, quintptr /*notificationID*/) {}
    virtual void releasePowerConnection(PowerConnection) {}
};
