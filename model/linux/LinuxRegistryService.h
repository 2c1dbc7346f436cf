#pragma once

#include "model/RegistryService.h"
#include "model/linux/ClassNames.h"
#include "model/linux/DriverBundles.h"
#include "model/linux/RegistryGraph.h"
#include "model/linux/Sweeper.h"
#include "model/linux/UdevDatabase.h"

#include <unordered_map>

// The device registry of a sysfs tree. Answers from the last finished sweep.
class LinuxRegistryService : public RegistryService
{
public:
    // Null, with a message for the user, when the folder is no sysfs tree.
    static std::unique_ptr<LinuxRegistryService> create(const QString &sysfsRoot, QString *error);
    static std::unique_ptr<LinuxRegistryService> create(const QString &sysfsRoot,
                                                        Sweeper::Options options, QString *error);
    ~LinuxRegistryService() override;

    void prepare() override;
    void prepareObject(RegistryObject object) override;

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
    void retain(RegistryObject object) override;
    void release(RegistryObject object) override;
    QString bundleURLForIdentifier(const QString &bundleID) override;

    // Every file that the last sweep has read, where the options ask for it.
    const std::vector<QByteArray> &filesRead() const { return filesRead_; }

private:
    // An object that somebody holds. One that is gone from the host keeps its last facts.
    struct Held
    {
        quint32 references = 0;
        quint64 id = 0;
        int index = HostObject::none; // in the graph; none when gone or free
        std::unique_ptr<HostObject> gone;
    };
    struct Iterator
    {
        std::span<const int> rest;
        quint64 sweep = 0; // one that began before the last sweep has ended
    };
    struct OnRequest
    {
        RegistryValue::Members members;
        QDateTime date;
    };

    LinuxRegistryService(std::shared_ptr<const SysfsRoot> root, Sweeper::Options options);
    void install(std::unique_ptr<RegistryGraph> graph);
    void addRequested(SweepObject &object) const;
    const HostObject *find(RegistryObject object) const; // null for no valid handle
    Held *held(RegistryObject object);
    RegistryObject hold(int index);
    static RegistryStatus copyText(const QByteArray &text, RegistryName &buffer);

    std::shared_ptr<const SysfsRoot> root_;
    Sweeper sweeper_;
    UdevDatabase udev_;
    ClassNames classNames_;
    DriverBundles bundles_;
    std::unique_ptr<RegistryGraph> graph_;
    std::vector<Held> held_; // by handle, less one
    std::vector<RegistryObject> freeHandles_;
    std::vector<RegistryObject> handles_; // by index in the graph; 0: nobody holds it
    std::vector<Iterator> iterators_;     // by iterator, less one
    std::vector<RegistryIterator> freeIterators_;
    quint64 sweepCount_ = 0;
    std::unordered_map<quint64, OnRequest> onRequest_; // by ID: what was read of one object alone
    std::vector<QByteArray> filesRead_;
};
