// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/NotifyingRegistryService.h"
#include "model/linux/DeviceEventSource.h"
#include "model/linux/DriverBundles.h"
#include "model/linux/EventNotifier.h"
#include "model/linux/GraphTask.h"
#include "model/linux/ObjectHandles.h"
#include "model/linux/UdevDatabase.h"
#include "platform/host/SleepMessages.h"
#include "platform/runloop/RunLoopSource.h"

#include <QObject>
#include <map>

// The device registry of a sysfs tree. Answers from the last finished reading; reports changes of
// the kernel's own tree.
class LinuxRegistryService : public NotifyingRegistryService
{
public:
    // Returns null when events are not available.
    using EventSourceFactory = std::function<std::unique_ptr<DeviceEventSource>()>;

    using Created = Result<std::unique_ptr<LinuxRegistryService>, SysfsRootError>;
    static Created create(const QString &sysfsRoot, TreeReader::Options options = {});
    ~LinuxRegistryService() override;

    // Call before creating notification ports. By default only the kernel's own tree has events.
    void setEventSourceFactory(EventSourceFactory factory) { openEvents_ = std::move(factory); }

    // Without one, sleep and wake are not reported.
    using SleepMessagesFactory = std::function<std::unique_ptr<SleepMessages>()>;
    void setSleepMessagesFactory(SleepMessagesFactory factory)
    {
        openSleepMessages_ = std::move(factory);
    }

    bool prepare() override;
    void prepareAsync(std::function<void()> ready) override;
    bool prepareObject(RegistryObject object) override;
    void readWhole(std::span<const RegistryObject> objects) override;

    bool mayReadOnRequest(RegistryObject object, const QString &attribute) override;
    void readOnRequest(RegistryObject object, const QString &attribute,
                       std::function<void()> ready) override;

    std::shared_ptr<const ModuleCatalog> moduleCatalog() override;
    std::shared_ptr<const DeviceNodes> deviceNodes() override;
    void sample(const ObjectSample::Request &request,
                std::function<void(const ObjectSample &)> ready) override;

    HostInformation hostInformation() override;
    bool retryWhatDidNotAnswer() override;
    RegistryObject rootEntry() override;
    RegistryObject entryFromPath(const QString &path) override;
    RegistryStatus childIterator(RegistryObject object, const char *plane,
                                 RegistryIterator &iterator) override;
    RegistryObject iteratorNext(RegistryIterator iterator) override;
    void releaseIterator(RegistryIterator iterator) override;
    RegistryStatus nameInPlane(RegistryObject object, const char *plane,
                               RegistryName &name) override;
    RegistryStatus locationInPlane(RegistryObject object, const char *plane,
                                   RegistryName &location) override;
    QString copyClassName(RegistryObject object) override;
    QString copySuperclassName(const QString &className) override;
    QString copyBundleIdentifierForClass(const QString &className) override;
    bool conformsTo(RegistryObject object, const QString &className) override;
    RegistryStatus entryID(RegistryObject object, quint64 &id) override;
    bool objectsEqual(RegistryObject a, RegistryObject b) override;
    RegistryStatus copyProperties(RegistryObject object, RegistryValue &properties) override;
    RegistryValue copyProperty(RegistryObject object, const QString &key) override;
    RegistryStatus serviceState(RegistryObject object, quint64 &state) override;
    RegistryStatus busyState(RegistryObject object, quint32 &busyCount) override;
    quint32 retainCount(RegistryObject object) override;
    QString kernelPath(RegistryObject object) override;
    void retain(RegistryObject object) override;
    void release(RegistryObject object) override;
    QString bundleURLForIdentifier(const QString &bundleID) override;
    std::shared_ptr<DeviceNames> deviceNames() override { return deviceNames_; }
    quint64 readingNumber() const override { return treeReadings_; }
    bool isUnchangedSince(RegistryObject object, quint64 reading) override;

    NotificationPort createNotificationPort() override;
    void destroyNotificationPort(NotificationPort port) override;
    PowerConnection registerForSystemPower(PowerCallback callback, NotificationPort &port,
                                           RegistryNotification &notification) override;
    void deregisterForSystemPower(RegistryNotification notification) override;
    void allowPowerChange(PowerConnection connection, quintptr notificationID) override;
    void releasePowerConnection(PowerConnection connection) override;

    // Every file of the last reading, if the options ask for it.
    const std::vector<SysfsPath> &filesRead() const { return filesRead_; }

private:
    struct Iterator
    {
        std::span<const int> rest;
        quint64 reading = 0; // an iterator of an earlier reading has ended
    };
    LinuxRegistryService(std::shared_ptr<const SysfsRoot> root, TreeReader::Options options);
    RegistryGraph *graph() { return objects_.graph(); }
    const RegistryGraph *graph() const { return objects_.graph(); }
    const HostObject *find(RegistryObject object) const { return objects_.find(object); }
    RegistryObject holdHost();
    static RegistryStatus copyText(const QByteArray &text, RegistryName &buffer);

    struct AttributeReading // in progress
    {
        RegistryObject object = 0; // held
        quint64 node = 0;
        std::function<void()> ready;
        std::unique_ptr<BackgroundTask<std::pair<TreeReader, RawObject>>> task;
    };
    using SampleTask = BackgroundTask<std::pair<TreeReader, ObjectSample>>;
    struct Sampling // in progress
    {
        std::function<void(const ObjectSample &)> ready;
        std::unique_ptr<SampleTask> task; // null: the object is not known
    };
    void sampleRead(quint64 number);
    ObjectReader::Request requestFor(int index) const; // for reading on request
    // None when the user cancels.
    std::optional<RawObject> readAllOnRequest(const ObjectReader::Request &request);
    void attributeRead(quint64 number);
    void beginPreparation(std::shared_ptr<SlowStep> slowStep = {});
    void cancelPreparation();
    void preparationFinished(quint64 number);
    std::vector<std::function<void()>> installPreparation();
    void installGraph(GraphTask::Result result);

    bool openEvents();
    void receiveEvents();
    void passOn(const DeviceEvent &event);
    void passOn(RegistryEvent event);
    void passOnLoss(quint64 nextSequence); // 0: not known yet
    void checkEverything();

    std::shared_ptr<const SysfsRoot> root_;
    TreeReader treeReader_;
    UdevDatabase udev_;
    ClassNames classNames_;
    DriverBundles bundles_;
    std::shared_ptr<const ModuleCatalog> moduleCatalog_; // null: not asked for, or none
    std::shared_ptr<DeviceNames> deviceNames_;
    ObjectHandles objects_;
    RequestedAttributes requested_;
    std::vector<quint64> readDuringPreparation_; // nodes read since the running preparation began
    std::vector<Iterator> iterators_;            // by iterator - 1
    std::vector<RegistryIterator> freeIterators_;
    quint64 treeReadings_ = 0;
    RegistryGraph::Memory memory_; // of the last reading
    std::vector<SysfsPath> filesRead_;

    SleepMessagesFactory openSleepMessages_;
    EventSourceFactory openEvents_;
    QSet<NotificationPort> eventPorts_;
    std::unique_ptr<DeviceEventSource> events_; // open while any port needs them
    std::unique_ptr<RunLoopSource> eventsReady_;
    EventNotifier notifier_;
    OneShotTimer::Ref afterLoss_;
    quint64 lastSequence_ = 0;   // of the events so far
    bool isLossPending_ = false; // to be passed on, once it is known how many were lost
    std::unordered_map<PowerConnection, std::unique_ptr<SleepMessages>> power_;

    // To call when the running preparation, or the next one, is installed.
    std::vector<std::function<void()>> ready_;
    std::vector<std::function<void()>> readyLater_;
    quint64 preparationNumber_ = 0;
    std::shared_ptr<const void> alive_;
    QObject mainThread_;                                    // where a preparation reports
    std::unique_ptr<GraphTask> preparation_;                // destroyed first
    std::map<quint64, AttributeReading> attributeReadings_; // by number; destroyed first
    quint64 attributeReadingNumber_ = 0;
    std::optional<TreeReader> samplingReader_; // does not try again what did not answer it
    std::map<quint64, Sampling> samplings_;    // by number; destroyed first
    quint64 samplingNumber_ = 0;
};
