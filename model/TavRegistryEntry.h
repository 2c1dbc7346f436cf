// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/DeviceName.h"
#include "model/EntryRecord.h"
#include "model/FindOptions.h"
#include "model/PropertyText.h"
#include "model/RegistryHandle.h"
#include "model/Severity.h"
#include "model/TavRegistryProperty.h"

#include <optional>

class EntryStore;
class TavRegistryEntryPath;

// Shared: views, paths and results may outlive an entry's time in its store.
using EntryRef = std::shared_ptr<TavRegistryEntry>;
using EntrySet = QSet<TavRegistryEntry *>;

// A kernel object of the device registry, as captured. Owned by its store; its links to other
// entries are cut when it leaves the store. Main thread only.
class TavRegistryEntry : public std::enable_shared_from_this<TavRegistryEntry>
{
    struct Private
    {
        explicit Private() = default;
    };

public:
    static constexpr int classVersion = 2;

    // Reads a live object; null when it cannot be read. The handle is retained.
    static EntryRef create(RegistryObject object, EntryStore &dataStore);
    // An entry with nothing read yet, to be restored from a snapshot.
    static EntryRef createEmpty();
    explicit TavRegistryEntry(Private) {} // by the two above
    ~TavRegistryEntry();
    TavRegistryEntry(const TavRegistryEntry &) = delete;
    TavRegistryEntry &operator=(const TavRegistryEntry &) = delete;

    const EntryRecord &facts() const { return facts_; }
    void restore(EntryRecord facts) { facts_ = std::move(facts); }
    void setTable(const RegistryValue &table, const QDateTime &dateRead);
    void setTree(PropertyRef tree); // for one that no table makes

    // The class of the nodes of property trees built from now on. Global: decoders create entries,
    // too, and know nothing of the display.
    static void setPropertyClass(const PropertyClass &nodeClass);
    static const PropertyClass &currentPropertyClass();

    // Reading from the service. On failure the last good values stay.
    bool readAttributesAndProperties();
    bool readDxRegistryNameAndLocationInPlane(const QString &plane); // null: for no plane
    void readDxRegistryNameAndLocationInPlanes(const QStringList &planes);
    void readChildrenInPlane(const QString &plane);
    void readChildrenInPlanes(const QStringList &planes);
    void updateIsSingle(bool single);
    // The same when the service reports no change.
    void noteUnchanged(const QDateTime &dateRead);
    // Whether names changed since the last call.
    bool takeIsRenamed() { return std::exchange(isRenamed_, false); }

    void addChild(TavRegistryEntry &child, const QString &plane);
    void addParent(TavRegistryEntry &parent, const QString &plane);
    void clearParentChildRelationships(); // the parents only: reading rebuilds the children
    void addAllChildrenTo(EntrySet &children) const; // over all planes
    void addAllParentsTo(EntrySet &parents) const;
    // Children are sorted by the names known when they are read, which may change later.
    bool areChildrenInOrder() const;
    void forgetParents(const EntrySet &parents);
    template<class IsBefore>
    void orderParents(IsBefore isBefore)
    {
        for (auto &item : facts_.parentsInPlanes) {
            EntryList::Entries parents = item.value.entries();
            if (std::is_sorted(parents.begin(), parents.end(), isBefore))
                continue;
            std::sort(parents.begin(), parents.end(), isBefore);
            item.value.setOrder(std::move(parents));
        }
    }
    void clearTerminatedChildren();
    void noteTerminatedAtDate(const QDateTime &date, bool immediate);
    void clearIsNew();
    void setDateLastUpdated(const QDateTime &date) { facts_.dateLastUpdated = date; }
    void setIsRegistryRoot(bool isRoot) { facts_.setFlag(EntryRecord::RegistryRoot, isRoot); }
    void _setDataStore(EntryStore *store);
    void setNumber(quint32 number) { number_ = number; } // by its store
    // Deliberate: does nothing, since entries hold no references to clients.
    void removeClient(const void *) {}
    // Cuts the links to other entries and to the store, for an entry that leaves its store. Entries
    // that stay call forgetLinksTo.
    void leaveStore();
    void forgetLinksTo(const EntrySet &leaving);

    RegistryObject DxRegistryEntry() const { return handle_.get(); }
    quint64 entryTag() const { return facts_.entryTag; }
    EntryStore *dataStore() const { return dataStore_; }
    // Unique in the store, and small: serves as index into arrays.
    quint32 number() const { return number_; }
    RegistryState registryState() const { return facts_.registryState; }
    const QDateTime &dateDiscovered() const { return facts_.dateDiscovered; }
    const QDateTime &dateLastUpdated() const { return facts_.dateLastUpdated; } // null: never
    QDateTime dateTerminated() const; // null unless the state is terminated
    // Even if the state does not show it yet.
    bool hasTerminationDate() const { return !facts_.dateTerminated.isNull(); }
    // Built on first use: most trees are never looked at.
    TavRegistryProperty *properties() const { return propertiesRef().get(); }
    const PropertyRef &propertiesRef() const;
    bool hasProperties() const { return properties_ || !table_.isNone(); }
    bool isTreeHeld() const { return properties_.use_count() > 1; } // by others, too
    bool hasTree() const { return properties_ != nullptr; }         // made already
    void dropUnusedTree();                                          // if it can be built again
    // What the tree is made from, for reading it in any thread; none if there is only the tree.
    const RegistryValue &table() const { return table_; }
    const PropertyText &propertyText() const { return propertyText_; }
    const QDateTime &dateRead() const { return dateRead_; } // of the table
    // A tree that nobody else holds, for work on another thread; null without properties.
    PropertyRef copyOfProperties(const PropertyClass &nodeClass) const;

    // What a hardware database calls the device; null when that is unknown, or not looked up yet.
    const DeviceName *deviceName() const
    {
        return deviceName_ && !deviceName_->isEmpty() ? deviceName_.get() : nullptr;
    }
    const DeviceNameRef &deviceNameRef() const { return deviceName_; } // null: not looked up
    bool isDeviceNameLookedUp() const { return deviceName_ != nullptr; }
    void setDeviceName(DeviceNameRef name) { deviceName_ = std::move(name); }

    const QString &bundleID() const { return facts_.bundleID; }        // null: none
    QString bundlePath() const;                                        // null: none
    QString kernelPath() const { return facts_.kernelPath.toOwner(); } // empty: none
    QString nameInPlane(const QString &plane) const;
    QString locationInPlane(const QString &plane) const;       // null: none
    QString nameAtLocationInPlane(const QString &plane) const; // "name@location" or "name"
    QString DxcoreClass() const;
    const QStringList &inheritance() const { return facts_.inheritance; } // most derived first
    QStringList reversedInheritance() const;
    QString inheritanceString() const; // "Derived : Base : Root"
    bool isKindOfDxcoreClass(const QString &className, bool substring) const;

    bool isRegistryRoot() const { return facts_.flags & EntryRecord::RegistryRoot; }
    bool conformsToDxService() const { return facts_.flags & EntryRecord::ConformsToDxService; }
    bool isRegistered() const { return facts_.flags & EntryRecord::Registered; }
    bool isMatched() const { return facts_.flags & EntryRecord::Matched; }
    bool isActive() const { return facts_.flags & EntryRecord::Active; }
    quint32 busyCount() const { return facts_.busyCount; }
    quint32 kernelRetainCount() const { return facts_.kernelRetainCount; }

    const EntryList::Entries &childrenInPlane(const QString &plane) const;
    const EntryList::Entries &parentsInPlane(const QString &plane) const;
    EntryList::Entries childrenWithNameAtLocation(const QString &nameAtLocation,
                                                  const QString &plane) const;
    std::size_t numParents() const; // over all planes
    EntrySet allAncestorsInPlane(const QString &plane) const;
    EntrySet allDescendantsInPlane(const QString &plane) const;
    void printName(const QString &plane) const;

    // Paths. A path string is "Plane:" for the root and "Plane:/Name/Name@Location" below it. If
    // there are very many paths, only some are listed.
    QStringList registryPathsInPlane(const QString &plane) const;
    QStringList allRegistryPaths() const;
    struct PathCounts
    {
        quint64 paths;  // in all planes; saturates
        quint64 planes; // with at least one path
    };
    PathCounts getNumRegistryPaths() const;
    std::vector<TavRegistryEntryPath> entryPathsInPlane(const QString &plane);
    std::optional<TavRegistryEntryPath> entryPathInPlane(const QString &plane, std::size_t index);
    std::vector<TavRegistryEntryPath> allEntryPaths();
    EntrySet entriesMatchingRelativeRegistryPath(const QString &path, const QString &plane);

    // Searching. Stores the answer in this entry and, with descendantMatches and a plane, in each
    // entry below it there.
    bool matchesQuery(const QString &query, FindOptions options, bool *descendantMatches,
                      const QString &plane);
    // The test for a word such as "busy" or "!new"; null for any other text.
    using SpecialTest = bool (*)(const TavRegistryEntry &);
    static SpecialTest specialTest(const QString &query);
    bool matchesSpecial(const QString &query) const; // "busy", "!new", "not matched" and so on
    // What looks wrong at it, as far as it was checked. Not part of its facts.
    void addFinding(Severity severity) { findings_ |= bitOf(severity); }
    void clearFindings() { findings_ = 0; }
    bool hasFinding(Severity severity) const { return (findings_ & bitOf(severity)) != 0; }
    std::optional<Severity> worstFinding() const;
    RegistryValue valueForSpecialProperty(const QString &word) const;
    // In the property table, at any depth, case-insensitive.
    bool containsPropertyName(const QString &name, bool substring) const;
    bool containsPropertyStringValue(const QString &text, bool substring) const;
    bool containsPropertyNumberValue(const RegistryValue &) const { return false; }
    void setMatchesLastQuery(bool matches) { matchesLastQuery_ = matches; }
    bool matchesLastQuery() const { return matchesLastQuery_; }
    void setDescendantMatchesLastQuery(bool matches, const QString &plane);
    bool descendantMatchesLastQueryInPlane(const QString &plane) const;
    void resetForQuery();

    friend bool operator==(const TavRegistryEntry &a, const TavRegistryEntry &b)
    {
        return a.facts_.entryTag == b.facts_.entryTag;
    }

    // By name at location in the plane, case-insensitive, then by tag. -1, 0, 1.
    static int compareForPlane(const TavRegistryEntry &a, const TavRegistryEntry &b,
                               const QString &plane);
    static void sortForPlane(EntryList::Entries &entries, const QString &plane);
    static EntryList::Entries sortedArrayForPlane(EntryList::Entries entries, const QString &plane);

private:
    static constexpr quint8 bitOf(Severity severity) { return quint8(1) << int(severity); }
    bool initWithDxRegistryEntry(RegistryObject object, EntryStore &dataStore);
    bool readIdentity(RegistryService &service);
    bool readInheritance(RegistryService &service);
    bool readServiceState(RegistryService &service);
    void readKernelPath(RegistryService &service);
    void makePropertiesOf(const RegistryValue &table);
    PropertyRef treeOfTable(const PropertyClass &nodeClass) const;
    QStringList planesWithParents() const;
    EntryList newChildrenInPlane(const QString &plane, const QByteArray &cPlane);

    EntryStore *dataStore_ = nullptr;
    RegistryHandle handle_;
    quint32 number_ = 0;
    bool isRenamed_ = false;
    // Not in the flags: a search on another thread writes it while flags are read.
    bool matchesLastQuery_ = false;
    quint8 findings_ = 0; // a bit for each severity
    EntryRecord facts_;
    RegistryValue table_; // the source of the properties; none: there is only the tree
    QDateTime dateRead_;  // of the table
    mutable PropertyRef properties_;
    PropertyText propertyText_; // of the properties
    DeviceNameRef deviceName_;  // not in the facts, which are the kernel's
    PlaneMap<bool> descendantMatchesLastQueryInPlanes_;
};
