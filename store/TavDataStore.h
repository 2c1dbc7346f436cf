// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/EntryOrder.h"
#include "model/EntryStore.h"
#include "model/ShownValueTest.h"
#include "model/TavRegistryEntry.h"
#include "store/EntryLocator.h"
#include "store/LiveUpdate.h"
#include "store/RegistryPass.h"
#include "store/TavDataStoreDelegate.h"

class DeviceNameLookup;
class FilterExpression;

// The device registry at one moment: all entries seen so far, the names of the planes and some
// facts about the machine. A live store reads the registry service; an archived one never does.
// Main thread only.
class TavDataStore : public EntryStore
{
public:
    // Captures the whole registry of a service, which must outlive the store. Nothing counts as new
    // in the first snapshot. Reports to the delegate when there is no registry. Null when the user
    // cancels.
    static std::unique_ptr<TavDataStore>
    initFromDxRegistry(RegistryService &service,
                       std::shared_ptr<TavDataStoreDelegate> delegate = nullptr);
    // The same for one look: hears of no changes, and an update finds no terminations.
    static std::unique_ptr<TavDataStore> captureOnce(RegistryService &service);
    ~TavDataStore() override;
    TavDataStore(const TavDataStore &) = delete;
    TavDataStore &operator=(const TavDataStore &) = delete;

    void setDelegate(std::shared_ptr<TavDataStoreDelegate> delegate);
    const std::shared_ptr<TavDataStoreDelegate> &delegate() const { return delegate_; }

    bool isLive() const override { return isLive_; }
    const QString &hostName() const { return hostName_; }
    const QString &archName() const { return archName_; } // "i386", "x86_64" or "<Unknown>"
    qint32 byteOrder() const override { return byteOrder_; }
    const QStringList &registryPlanes() const override { return registryPlanes_; }
    const QDateTime &lastUpdateDate() const { return lastUpdateDate_; }
    bool isUpToDate() const { return isUpToDate_; }
    void setUpToDate(bool upToDate) { isUpToDate_ = upToDate; }
    RegistryService *service() const override { return service_; }
    RegistryService *bundleService() const override { return bundleService_; }
    // For an archived store. The service must outlive it.
    void setBundleService(RegistryService &service) { bundleService_ = &service; }

    const std::vector<EntryRef> &registryEntries() const { return registryEntries_; } // root first
    TavRegistryEntry *registryRoot() const;
    TavRegistryEntry *entryWithTag(quint64 tag) const; // or null
    // The sysfs paths of objects that did not answer: the snapshot lacks their attributes.
    QStringList incompleteObjects() const;

    // Rereads the registry. Blocks. False, with everything unchanged, when the store is not live or
    // the user cancels.
    bool update();
    bool updateTryingAgain(); // retries what did not answer
    void updateObject(TavRegistryEntry &entry);
    // All properties of these entries, where the service reads the structure only.
    void readWhole(std::span<TavRegistryEntry *const> entries);
    // Like locator().find(); also finds attributes that have not been read.
    std::vector<TavRegistryEntry *> findReadingWhole(const QString &name);
    // Attributes that are only read on request, by their names in "DxUnreadAttributes".
    bool mayReadAttribute(const TavRegistryEntry &entry, const QString &attribute) const;
    // Does not block. Calls then when the entry has been reread with the attribute, unless the
    // store is gone.
    void readAttribute(TavRegistryEntry &entry, const QString &attribute,
                       std::function<void()> then);
    void setHasPendingTerminations(bool pending) override { hasPendingTerminations_ = pending; }
    void clearTerminatedObjects();
    void removeClient(const void *client);
    void noteObjectChanged(TavRegistryEntry &entry) override;

    TavRegistryEntry *registryEntryForDxRegistryEntry(RegistryObject object,
                                                      bool createIfNeeded) override;

    // Names of devices from the hardware databases of this machine, whatever machine the entries
    // are from, for entries that have none yet. In the background; posts deviceNamesFound.
    void lookUpDeviceNames();
    void lookUpDeviceNamesNow();                                           // blocks; posts nothing
    void lookUpDeviceNamesNow(std::span<TavRegistryEntry *const> entries); // likewise

    // Following the registry. With automatic update, a change triggers an update soon after;
    // without, the change is only reported. Polled update repeats after a number of seconds, above
    // 0 and at most 3600.
    void setAutoupdate(bool autoupdate);
    bool isAutoupdate() const { return live_.autoupdate; }
    void setPolledUpdate(bool polledUpdate);
    bool isPolledUpdate() const { return live_.polledUpdate; }
    void setPollInterval(double seconds); // ignored if out of range
    double pollInterval() const { return live_.pollInterval; }
    void handleVornMessage(const RegistryMessage &message);
    // While paused, the store changes only by direct updates. Resuming applies at once what came
    // meanwhile.
    void setPaused(bool paused);
    bool isPaused() const { return live_.held.has_value(); }
    quint64 heldEvents() const { return live_.held ? live_.held->events : 0; }

    struct PathMatches
    {
        EntrySet entries;
        QString plane; // null without a plane or a match
    };
    // The entries at a path such as "DxService:/Name/Name@Location"; the name of a plane alone is
    // the root.
    PathMatches entriesMatchingRegistryPath(const QString &path) const;

    // Made when it is first asked for after a change.
    const EntryLocator &locator() const;

    // Adds all matching entries, and by plane the entries with a match below them. Both may be
    // null. Without a test, no shown value matches.
    void runQuery(const QString &query, FindOptions options, EntrySet *matches,
                  QHash<QString, EntrySet> *parentsOfMatches,
                  const ShownValueTest &shownValues = nullptr);
    // The same for the entries that satisfy an expression. False when regular expressions took so
    // long that some were left out.
    bool runFilter(const FilterExpression &filter, EntrySet *matches,
                   QHash<QString, EntrySet> *parentsOfMatches);
    // Whether single entries, be they of this store or not, satisfy an expression. For relatives,
    // valid until the store changes.
    std::function<bool(const TavRegistryEntry &)> testFor(const FilterExpression &filter);

private:
    friend class DataStoreDecoder;
    friend class RedactedStore;
    friend class StoreBuilder;

    TavDataStore();
    const std::vector<EntryOrder> &planeOrders();
    void collectMatches(EntrySet *matches, QHash<QString, EntrySet> *parentsOfMatches) const;
    void readMachineFacts();
    bool updateAfter(bool (RegistryService::*prepare)());
    void readRegistry(const QDateTime &began);
    void updatePlanes();
    void announceUpdate();
    TavRegistryEntry *_registryEntryWithDxRegistryEntry(RegistryObject object, bool isRoot);
    TavRegistryEntry *findEntry(RegistryObject object) const;
    void dropEntries(const EntrySet &leaving);
    void _fatalDxRegistryError();
    void post(const QString &notification);

    void _registerForDxcoreNotifications();
    bool registerForPower();
    bool addMatchingNotification(const char *type, RegistryIterator &iterator,
                                 RegistryService::MatchingCallback callback);
    bool addInterestNotification(const char *type, RegistryNotification &notification,
                                 RegistryService::InterestCallback callback);
    void drain(RegistryIterator iterator);
    void endNotifications();
    void noteChange();
    void noteTerminated(RegistryIterator iterator);
    void holdTerminations(RegistryIterator iterator);
    void pause();
    void resume();
    bool noteTerminations(const std::vector<std::pair<quint64, QDateTime>> &terminations);
    void notePowerMessage(quint32 type, quintptr notificationID);
    PowerConnection _powerDomainRoot() const { return live_.powerDomainRoot; }
    void _setOnSleepWakePath(bool onPath);
    void _scheduleAutoupdateIsBusy(bool busy);
    void _autoupdate(const OneShotTimer::Ref &timer);
    void _resetPollTimer();
    void _polledUpdate(const OneShotTimer::Ref &timer);
    void updateWhenPrepared(std::function<void()> then);

    std::shared_ptr<TavDataStoreDelegate> delegate_;
    RegistryService *service_ = nullptr;
    RegistryService *bundleService_ = nullptr;
    QString hostName_;
    QString archName_;
    qint32 byteOrder_ = ByteOrderUnknown;
    bool isLive_ = false;
    bool isUpToDate_ = false;
    bool hasPendingTerminations_ = false;
    QDateTime lastUpdateDate_;
    std::vector<EntryRef> registryEntries_;
    void forgetTags(); // of an archived store whose entries change

    // Of registryEntries_; in an archived store made when it is first asked for.
    mutable QHash<quint64, TavRegistryEntry *> entriesByTag_;
    mutable bool isArchiveIndexed_ = false;
    QStringList registryPlanes_;
    std::vector<EntryOrder> planeOrders_; // from the root; valid at ordersAsOf_
    quint64 ordersAsOf_ = 0;
    mutable std::unique_ptr<EntryLocator> locator_; // null after a change
    RegistryPass pass_;
    LiveUpdate live_;
    std::unique_ptr<DeviceNameLookup> deviceNameLookup_;    // null: not asked for yet
    quint64 directUpdates_ = 0;                             // those that blocked
    std::shared_ptr<void> life_ = std::make_shared<char>(); // expires with the store
};
