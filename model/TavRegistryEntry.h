#pragma once

#include "model/EntryList.h"
#include "model/FindOptions.h"
#include "model/PlaneNames.h"
#include "model/PlaneTable.h"
#include "model/PropertyText.h"
#include "model/RegistryHandle.h"
#include "model/RegistryState.h"
#include "model/TavRegistryProperty.h"

#include <QStringList>

class EntryStore;
class TavRegistryEntryPath;

// Views, paths and results may outlive an entry's time in its store.
using EntryRef = std::shared_ptr<TavRegistryEntry>;
using EntrySet = QSet<TavRegistryEntry *>;

// One kernel object of the device registry as it was captured. Its store owns it; its links to
// other entries are cut when it leaves the store. Main thread only.
class TavRegistryEntry : public std::enable_shared_from_this<TavRegistryEntry>
{
    struct Private
    {
        explicit Private() = default;
    };

public:
    enum Flag : quint8 {
        RegistryRoot = 1,
        ConformsToDxService = 2,
        Registered = 4,
        Matched = 8,
        Active = 16,
    };
    static constexpr int classVersion = 2;

    // Reads a live object; null when it cannot be read. The handle is retained.
    static EntryRef create(RegistryObject object, EntryStore &dataStore);
    // An entry with nothing read yet, for one that comes from a document.
    static EntryRef createEmpty();
    explicit TavRegistryEntry(Private) {} // by the two above
    ~TavRegistryEntry();
    TavRegistryEntry(const TavRegistryEntry &) = delete;
    TavRegistryEntry &operator=(const TavRegistryEntry &) = delete;

    // The class of the nodes of every property tree read from now on.
    static void setPropertyClass(const PropertyClass &nodeClass);
    static const PropertyClass &currentPropertyClass();

    // Reading from the service. Each keeps the last good values when it fails.
    bool readAttributesAndProperties();
    bool readDxRegistryNameAndLocationInPlane(const QString &plane); // null: for no plane
    void readDxRegistryNameAndLocationInPlanes(const QStringList &planes);
    void readChildrenInPlane(const QString &plane);
    void readChildrenInPlanes(const QStringList &planes);
    void updateIsSingle(bool single);
    // The same when the service is known to have nothing new.
    void noteUnchanged(const QDateTime &dateRead);
    // Whether reading found other names, or the first ones, since this was asked last.
    bool takeIsRenamed() { return std::exchange(isRenamed_, false); }

    void addChild(TavRegistryEntry &child, const QString &plane);
    void addParent(TavRegistryEntry &parent, const QString &plane);
    void clearParentChildRelationships(); // the parents only: children are rebuilt by reading
    void addAllChildrenTo(EntrySet &children) const; // over all planes
    void addAllParentsTo(EntrySet &parents) const;
    // Children are put in order by the names that are known when they are read.
    bool areChildrenInOrder() const;
    void forgetParents(const EntrySet &parents);
    template<class IsBefore>
    void orderParents(IsBefore isBefore)
    {
        for (auto &item : parentsInPlanes_) {
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
    void setDateLastUpdated(const QDateTime &date) { dateLastUpdated_ = date; }
    void setIsRegistryRoot(bool isRoot) { setFlag(RegistryRoot, isRoot); }
    void _setDataStore(EntryStore *store) { dataStore_ = store; }
    // Drops what refers to a client, such as a view; entries refer to none.
    void removeClient(const void *) {}
    // Cuts what leads to other entries and to the store, for an entry that leaves its store alone
    // or together with all others. Entries that stay forget it by forgetLinksTo.
    void leaveStore();
    void forgetLinksTo(const EntrySet &leaving);

    RegistryObject DxRegistryEntry() const { return handle_.get(); }
    quint64 entryTag() const { return entryTag_; }
    EntryStore *dataStore() const { return dataStore_; }
    RegistryState registryState() const { return registryState_; }
    const QDateTime &dateDiscovered() const { return dateDiscovered_; }
    const QDateTime &dateLastUpdated() const { return dateLastUpdated_; } // null: never
    QDateTime dateTerminated() const; // null until the entry's state is terminated
    bool hasTerminationDate() const { return !dateTerminated_.isNull(); } // even if not yet shown
    // The tree is made when it is first asked for: most are never looked at.
    TavRegistryProperty *properties() const { return propertiesRef().get(); }
    const PropertyRef &propertiesRef() const;
    bool hasProperties() const { return properties_ || !table_.isNone(); }
    bool isTreeHeld() const { return properties_.use_count() > 1; } // by others, too
    bool hasTree() const { return properties_ != nullptr; }         // made already
    void dropUnusedTree(); // one that was made lately, and can be made again

    const QString &bundleID() const { return bundleID_; } // null: none
    QString bundlePath() const;                           // null: none
    QString nameInPlane(const QString &plane) const;
    QString locationInPlane(const QString &plane) const;       // null: none
    QString nameAtLocationInPlane(const QString &plane) const; // "name@location" or "name"
    QString DxcoreClass() const;
    const QStringList &inheritance() const { return inheritance_; } // most derived first
    QStringList reversedInheritance() const;
    QString inheritanceString() const; // "Derived : Base : Root"
    bool isKindOfDxcoreClass(const QString &className, bool substring) const;

    bool isRegistryRoot() const { return flags_ & RegistryRoot; }
    bool conformsToDxService() const { return flags_ & ConformsToDxService; }
    bool isRegistered() const { return flags_ & Registered; }
    bool isMatched() const { return flags_ & Matched; }
    bool isActive() const { return flags_ & Active; }
    quint32 busyCount() const { return busyCount_; }
    quint32 kernelRetainCount() const { return kernelRetainCount_; }

    const EntryList::Entries &childrenInPlane(const QString &plane) const;
    const EntryList::Entries &parentsInPlane(const QString &plane) const;
    EntryList::Entries childrenWithNameAtLocation(const QString &nameAtLocation,
                                                  const QString &plane) const;
    std::size_t numParents() const; // over all planes
    EntrySet allAncestorsInPlane(const QString &plane) const;
    EntrySet allDescendantsInPlane(const QString &plane) const;
    void printName(const QString &plane) const;

    // Paths. A path string is "Plane:" for the root and "Plane:/Name/Name@Location" below it. Of an
    // absurd number only some are listed.
    QStringList registryPathsInPlane(const QString &plane) const;
    QStringList allRegistryPaths() const;
    struct PathCounts
    {
        quint64 paths;  // of all planes, at most the largest number
        quint64 planes; // those with at least one path
    };
    PathCounts getNumRegistryPaths() const;
    std::vector<TavRegistryEntryPath> entryPathsInPlane(const QString &plane);
    std::optional<TavRegistryEntryPath> entryPathInPlane(const QString &plane, std::size_t index);
    std::vector<TavRegistryEntryPath> allEntryPaths();
    EntrySet entriesMatchingRelativeRegistryPath(const QString &path, const QString &plane);

    // Searching. The answer for this entry is kept, and for each entry below it in the plane, and
    // whether anything below matched; with no plane or nowhere to tell of it, of this one alone.
    bool matchesQuery(const QString &query, FindOptions options, bool *descendantMatches,
                      const QString &plane);
    // What a word such as "busy" or "!new" asks of an entry; null for any other text.
    using SpecialTest = bool (*)(const TavRegistryEntry &);
    static SpecialTest specialTest(const QString &query);
    bool matchesSpecial(const QString &query) const; // "busy", "!new", "not matched" and so on
    RegistryValue valueForSpecialProperty(const QString &word) const;
    // In the property table, at any depth; without regard to case.
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
        return a.entryTag_ == b.entryTag_;
    }

    // Of two entries in a plane: names at locations without regard to case, then tags. -1, 0, 1.
    static int compareForPlane(const TavRegistryEntry &a, const TavRegistryEntry &b,
                               const QString &plane);
    static void sortForPlane(EntryList::Entries &entries, const QString &plane);
    static EntryList::Entries sortedArrayForPlane(EntryList::Entries entries, const QString &plane);

private:
    friend class DataStoreEncoder;
    friend class RegistryEntryDecoder;

    friend class EntryOrder;
    friend class EntryQuery;

    bool initWithDxRegistryEntry(RegistryObject object, EntryStore &dataStore);
    bool readIdentity(RegistryService &service);
    bool readInheritance(RegistryService &service);
    bool readServiceState(RegistryService &service);
    void setFlag(Flag flag, bool on);
    void setTable(const RegistryValue &table, const QDateTime &dateRead);
    void setTree(PropertyRef tree); // that no table stands for
    void makePropertiesOf(const RegistryValue &table);
    QStringList planesWithParents() const;
    EntryList::Entries newChildrenInPlane(const QString &plane, const QByteArray &cPlane);

    EntryStore *dataStore_ = nullptr;
    RegistryHandle handle_;
    quint64 entryTag_ = 0;
    QDateTime dateDiscovered_;
    QDateTime dateLastUpdated_;
    QDateTime dateTerminated_;
    RegistryState registryState_ = RegistryStateUnchanged;
    quint32 busyCount_ = 0;
    quint32 kernelRetainCount_ = 0;
    quint8 flags_ = 0;
    bool isRenamed_ = false;
    // No flag, for a search on another thread writes it while flags are read.
    bool matchesLastQuery_ = false;
    bool matchesInAnyPlane_ = false; // by what is the same in every plane; as of answeredQuery_
    quint32 answeredQuery_ = 0;
    quint32 visitedWalk_ = 0;     // of an order of one plane
    quint32 positionInWalk_ = 0;  // there
    quint64 listedByReading_ = 0; // of an entry's children in one plane
    QString bundleID_;
    QStringList inheritance_;
    RegistryValue table_; // that the properties were last read from; none: the tree alone
    QDateTime dateRead_;  // of the table
    mutable PropertyRef properties_;
    PropertyText propertyText_; // of the properties
    QString name_;
    QString location_;
    PlaneNames namesInPlanes_;
    PlaneNames locationsInPlanes_;
    PlaneTable<EntryList> childrenInPlanes_;
    PlaneTable<EntryList> parentsInPlanes_;
    PlaneTable<bool> descendantMatchesLastQueryInPlanes_;
};
