// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/DeviceNames.h"
#include "model/NotifyingRegistryService.h"
#include "tests/support/FakeRegistry.h"

// A registry service with a scripted registry. It counts the handles and iterators that it returns,
// so that a test can check that all are released.
class FakeRegistryService : public NotifyingRegistryService, public FakeRegistry
{
public:
    void setHasEntryIDs(bool has) { hasEntryIDs_ = has; }
    void setHasSuperclassLookup(bool has) { hasSuperclassLookup_ = has; }
    void setDistinctHandles(bool distinct) { distinctHandles_ = distinct; }

    quint64 openHandles() const { return openHandles_; }
    quint64 openIterators() const { return static_cast<quint64>(iterators_.size()); }
    quint64 misuses() const { return misuses_; } // uses and releases of what was not held
    int preparations() const { return preparations_; }
    const std::vector<Node> &preparedObjects() const { return preparedObjects_; }

    // Attributes read on request: pending until the script answers, which changes the properties.
    void offerReading(Node node, const QString &attribute)
    {
        offered_.push_back({node, attribute});
    }
    const std::vector<std::pair<Node, QString>> &askedFor() const { return askedFor_; }
    void answerReading(const RegistryValue &properties); // the first one

    bool prepare() override
    {
        ++preparations_;
        return !std::exchange(cancelsPreparation_, false);
    }
    void cancelNextPreparation() { cancelsPreparation_ = true; } // like the user
    bool retryWhatDidNotAnswer() override
    {
        ++retries_;
        return prepare();
    }
    int retries() const { return retries_; }
    bool mayReadOnRequest(RegistryObject object, const QString &attribute) override;
    void readOnRequest(RegistryObject object, const QString &attribute,
                       std::function<void()> ready) override;
    // Answers with the properties of the object with the kernel path, on the next turn.
    void sample(const ObjectSample::Request &request,
                std::function<void(const ObjectSample &)> ready) override;
    int samples() const { return samples_; }
    bool prepareObject(RegistryObject object) override;
    RegistryObject rootEntry() override { return handOut(root()); }
    RegistryObject entryFromPath(const QString &path) override;
    RegistryStatus childIterator(RegistryObject object, const char *plane,
                                 RegistryIterator &iterator) override;
    RegistryObject iteratorNext(RegistryIterator iterator) override;
    void releaseIterator(RegistryIterator iterator) override;
    RegistryStatus nameInPlane(RegistryObject object, const char *plane,
                               RegistryName &name) override;
    RegistryStatus locationInPlane(RegistryObject object, const char *plane,
                                   RegistryName &location) override;
    QString kernelPath(RegistryObject object) override
    {
        return exists(object) ? at(object).kernelPath : QString();
    }
    QString copyClassName(RegistryObject object) override;
    bool hasSuperclassLookup() const override { return hasSuperclassLookup_; }
    QString copySuperclassName(const QString &className) override
    {
        return classNamed(className).superclass;
    }
    QString copyBundleIdentifierForClass(const QString &className) override
    {
        return classNamed(className).bundleID;
    }
    bool conformsTo(RegistryObject object, const QString &className) override;
    bool hasEntryIDs() const override { return hasEntryIDs_; }
    RegistryStatus entryID(RegistryObject object, quint64 &id) override;
    bool objectsEqual(RegistryObject a, RegistryObject b) override;
    RegistryStatus copyProperties(RegistryObject object, RegistryValue &properties) override
    {
        return read(PropertiesFail, object, &Object::properties, properties);
    }
    RegistryValue copyProperty(RegistryObject object, const QString &key) override;
    RegistryStatus serviceState(RegistryObject object, quint64 &state) override
    {
        return read(ServiceStateFails, object, &Object::state, state);
    }
    RegistryStatus busyState(RegistryObject object, quint32 &busyCount) override
    {
        return read(BusyStateFails, object, &Object::busyCount, busyCount);
    }
    quint32 retainCount(RegistryObject object) override;
    void retain(RegistryObject object) override;
    void release(RegistryObject object) override;
    HostInformation hostInformation() override
    {
        HostInformation host = NotifyingRegistryService::hostInformation();
        if (!computerName_.isNull())
            host.computerName = computerName_;
        return host;
    }
    void setComputerName(const QString &name) { computerName_ = name; }
    std::shared_ptr<DeviceNames> deviceNames() override { return deviceNames_; }
    void setDeviceNames(std::shared_ptr<DeviceNames> names) { deviceNames_ = std::move(names); }
    QString bundleURLForIdentifier(const QString &bundleID) override
    {
        return bundlePath(bundleID);
    }

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
        QByteArray plane;
        std::size_t next = 0;
    };

    Object *held(RegistryObject object);
    Object *heldWithout(Failure failure, RegistryObject object);
    template<class Value>
    RegistryStatus read(Failure failure, RegistryObject object, Value Object::*field, Value &value)
    {
        const Object *const found = heldWithout(failure, object);
        if (!found)
            return RegistryStatus::Failed;
        value = found->*field;
        return RegistryStatus::Success;
    }

    QHash<RegistryIterator, Iterator> iterators_;
    RegistryIterator lastIterator_ = 0;
    QString computerName_; // null: this machine's
    std::shared_ptr<DeviceNames> deviceNames_;
    bool hasEntryIDs_ = true;
    bool hasSuperclassLookup_ = true;
    bool distinctHandles_ = false;
    quint32 lastAlias_ = 0;
    quint64 openHandles_ = 0;
    quint64 misuses_ = 0;
    int preparations_ = 0;
    int samples_ = 0;
    QObject samplesReady_;
    bool cancelsPreparation_ = false;
    int retries_ = 0;
    std::vector<Node> preparedObjects_;
    std::vector<std::pair<Node, QString>> offered_;
    std::vector<std::pair<Node, QString>> askedFor_;
    std::vector<std::function<void()>> ready_; // of those, but the answered ones are null
};
