#pragma once

#include "model/RegistryService.h"

#include <QHash>
#include <vector>

// The objects of a registry in memory, made and changed by a script. Names and locations are UTF-8,
// or not, as the script has it; a null location is none.
class FakeRegistry
{
public:
    // Names an object to the script. Never used for another one, and a valid handle of the object
    // for who has been given it.
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

    void addClass(const QString &name, const QString &superclass, const QString &bundleID = {});
    void addClassChain(const QStringList &mostDerivedFirst);
    void setBundlePath(const QString &bundleID, const QString &path);

    Node add(const QString &className, const QByteArray &name, const QByteArray &location = {});
    void remove(Node node); // out of every plane and inactive; handles of it keep answering
    void setRoot(Node node) { root_ = node; }
    Node root() const { return root_; }
    void link(Node parent, Node child, const QByteArray &plane);
    void unlink(Node parent, Node child, const QByteArray &plane);
    void publishPlanes(); // all planes so far, as a property of the root

    void setName(Node node, const QByteArray &name, const QByteArray &plane = {});
    void setLocation(Node node, const QByteArray &location, const QByteArray &plane = {});
    void setProperties(Node node, const RegistryValue &properties);
    void setEntryID(Node node, quint64 id) { at(node).entryID = id; }
    void setState(Node node, quint64 state) { at(node).state = state; }
    void setBusyCount(Node node, quint32 count) { at(node).busyCount = count; }
    void setRetainCount(Node node, quint32 count) { at(node).retainCount = count; }
    void setFailures(Node node, Failures failures) { at(node).failures = failures; }

protected:
    using PlaneIndex = std::size_t;
    struct PlaneTexts
    {
        PlaneIndex plane;
        QByteArray name; // null: the one without a plane
        QByteArray location;
        bool hasOwnLocation; // or has none there
    };
    struct Children
    {
        PlaneIndex plane;
        std::vector<Node> nodes;
    };
    struct Object
    {
        QString className;
        QByteArray name;
        QByteArray location;
        std::vector<PlaneTexts> planeTexts;
        std::vector<Children> children;
        RegistryValue properties;
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
    bool exists(Node node) const { return node > 0 && node <= objects_.size(); }
    PlaneIndex planeIndex(QByteArrayView plane) const;
    const std::vector<Node> &childrenInPlane(Node node, PlaneIndex plane);
    // A null plane asks for the text that stands for no plane in particular.
    const QByteArray &nameIn(const Object &object, const char *plane) const;
    const QByteArray &locationIn(const Object &object, const char *plane) const;
    QByteArray nameAtLocation(const Object &object, const char *plane) const;
    const Class &classNamed(const QString &name) const;
    QString bundlePath(const QString &bundleID) const { return bundlePaths_.value(bundleID); }

private:
    PlaneIndex addPlane(const QByteArray &plane);
    PlaneTexts &addTexts(Node node, const QByteArray &plane);
    const PlaneTexts *findTexts(const Object &object, const char *plane) const;
    std::vector<Node> &addChildren(Node node, const QByteArray &plane);

    std::vector<Object> objects_;
    std::vector<QByteArray> planes_;
    QHash<QString, Class> classes_;
    QHash<QString, QString> bundlePaths_;
    Node root_ = 0;
};

Q_DECLARE_OPERATORS_FOR_FLAGS(FakeRegistry::Failures)
