#pragma once

#include "model/NotifyingRegistryService.h"
#include "tests/support/FakeRegistry.h"

// A registry service that answers from a scripted registry. It counts what it hands out, so that a
// test can tell whether every handle and iterator was given back, and how often it is asked.
class FakeRegistryService : public NotifyingRegistryService, public FakeRegistry
{
public:
    void setHasEntryIDs(bool has) { hasEntryIDs_ = has; }
    void setHasSuperclassLookup(bool has) { hasSuperclassLookup_ = has; }
    void setDistinctHandles(bool distinct) { distinctHandles_ = distinct; }

    quint64 openHandles() const { return openHandles_; }
    quint64 openIterators() const { return iterators_.size() - freeIterators_.size(); }
    quint64 misuses() const { return misuses_; } // uses and releases of what was not held
    quint64 calls() const { return calls_; }
    int preparations() const { return preparations_; }
    const std::vector<Node> &preparedObjects() const { return preparedObjects_; }

    void prepare() override { ++preparations_; }
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
    bool hasSuperclassLookup() const override { return hasSuperclassLookup_; }
    QString copySuperclassName(const QString &className) override;
    QString copyBundleIdentifierForClass(const QString &className) override;
    bool conformsTo(RegistryObject object, const QString &className) override;
    bool hasEntryIDs() const override { return hasEntryIDs_; }
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

    PowerConnection registerForSystemPower(PowerCallback, NotificationPort &,
                                           RegistryNotification &) override
    {
        return 1;
    }

protected:
    RegistryObject handOut(Node node);

private:
    struct Iterator
    {
        Node node;
        PlaneIndex plane;
        std::size_t next;
        bool isOpen;
    };

    Object *held(RegistryObject object);
    Object *heldWithout(Failure failure, RegistryObject object);
    Iterator *opened(RegistryIterator iterator);

    std::vector<Iterator> iterators_;
    std::vector<RegistryIterator> freeIterators_;
    bool hasEntryIDs_ = true;
    bool hasSuperclassLookup_ = true;
    bool distinctHandles_ = false;
    quint32 lastAlias_ = 0;
    quint64 openHandles_ = 0;
    quint64 misuses_ = 0;
    quint64 calls_ = 0;
    int preparations_ = 0;
    std::vector<Node> preparedObjects_;
};
