// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/RegistryService.h"

#include <QByteArrayList>
#include <QHash>
#include <optional>
#include <vector>

// A registry in memory, created and changed by a script. Names and locations may be invalid UTF-8;
// a null location means none.
class FakeRegistry
{
public:
    // Identifies an object for the script. Never reused; a valid handle of the object for holders
    // of a handle.
    using Node = RegistryObject;

    enum Failure : quint16 {
        EntryIDFails = 1,
        ClassNameFails = 2,
        NameFails = 4,
        NameInPlaneFails = 8,
        LocationFails = 16,
        LocationInPlaneFails = 32,
        PropertiesFail = 64,
        ServiceStateFails = 128,
        BusyStateFails = 256,
        ChildIteratorFails = 512,
    };
    Q_DECLARE_FLAGS(Failures, Failure)

    void addClass(const QString &name, const QString &superclass, const QString &bundleID = {})
    {
        classes_.insert(name, {superclass, bundleID});
    }
    void addClassChain(const QStringList &mostDerivedFirst);
    void setBundlePath(const QString &id, const QString &path) { bundlePaths_.insert(id, path); }

    Node add(const QString &className, const QByteArray &name, const QByteArray &location = {});
    void
    remove(Node node); // removes it from every plane and makes it inactive; its handles stay valid
    void setRoot(Node node) { root_ = node; }
    Node root() const { return root_; }
    void link(Node parent, Node child, const QByteArray &plane)
    {
        addPlane(parent, plane).children.push_back(child);
    }
    void unlink(Node parent, Node child, const QByteArray &plane);
    void publishPlanes(); // all planes so far, as a property of the root

    void setName(Node node, const QByteArray &name, const QByteArray &plane = {});
    void setLocation(Node node, const QByteArray &location, const QByteArray &plane = {});
    void setProperties(Node node, const RegistryValue &its) { at(node).properties = its; }
    void setKernelPath(Node node, const QString &path) { at(node).kernelPath = path; }
    void setEntryID(Node node, quint64 id) { at(node).entryID = id; }
    void setState(Node node, quint64 state) { at(node).state = state; }
    void setBusyCount(Node node, quint32 count) { at(node).busyCount = count; }
    void setRetainCount(Node node, quint32 count) { at(node).retainCount = count; }
    void setFailures(Node node, Failures failures) { at(node).failures = failures; }

protected:
    // What an object has in one plane, overriding its general values.
    struct InPlane
    {
        QByteArray plane;
        QByteArray name; // null: the general one
        std::optional<QByteArray> location;
        std::vector<Node> children;
    };
    struct Object
    {
        QString className;
        QByteArray name;
        QByteArray location;
        std::vector<InPlane> planes;
        RegistryValue properties;
        QString kernelPath;
        quint64 entryID = 0;
        quint64 state = ServiceRegistered;
        quint32 busyCount = 0;
        quint32 retainCount = 1;
        quint32 handles = 0;
        Failures failures;
    };
    struct Class
    {
        QString superclass;
        QString bundleID;
    };

    ~FakeRegistry() = default;
    Object &at(Node node) { return objects_[node - 1]; }
    const Object *withKernelPath(const QString &path) const; // null: none that is still there
    bool exists(Node node) const { return node > 0 && node <= objects_.size(); }
    // A null plane returns the general text.
    static const InPlane &inPlane(const Object &object, QByteArrayView plane);
    static const QByteArray &nameIn(const Object &object, QByteArrayView plane);
    static const QByteArray &locationIn(const Object &object, QByteArrayView plane);
    Class classNamed(const QString &name) const { return classes_.value(name); }
    QString bundlePath(const QString &bundleID) const { return bundlePaths_.value(bundleID); }

private:
    InPlane &addPlane(Node node, const QByteArray &plane);

    std::vector<Object> objects_;
    QByteArrayList planes_;
    QHash<QString, Class> classes_;
    QHash<QString, QString> bundlePaths_;
    Node root_ = 0;
};

Q_DECLARE_OPERATORS_FOR_FLAGS(FakeRegistry::Failures)
