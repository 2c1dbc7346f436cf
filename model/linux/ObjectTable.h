// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/linux/HostObject.h"
#include "model/linux/TreeContents.h"

class ClassNames;

// All objects of the host, sorted by ID, linked, named and classified.
class ObjectTable
{
public:
    static constexpr int root = 0;
    static constexpr int host = 1;
    static constexpr quint64 rootID = 1;
    static constexpr quint64 hostID = 2;

    // Takes the facts of root and host, since a tree has none about the running system.
    ObjectTable(TreeContents contents, RegistryValue::Members rootFacts,
                RegistryValue::Members hostFacts, ClassNames &classNames);

    int count() const { return static_cast<int>(objects_.size()); }
    HostObject &at(int index) { return objects_[static_cast<std::size_t>(index)]; }
    const HostObject &at(int index) const { return objects_[static_cast<std::size_t>(index)]; }
    int withPath(const SysfsPath &path) const; // or HostObject::none
    // The target of an object's link, or HostObject::none.
    int linked(const HostObject &object, QByteArrayView link) const;
    int linked(const HostObject &object, QByteArrayView link, RawObject::Kind kind) const;
    // The nearest object above, by directory, that satisfies the predicate.
    template<class Predicate>
    int above(int index, Predicate predicate) const
    {
        int ancestor = at(index).parent;
        while (ancestor != HostObject::none && !predicate(at(ancestor)))
            ancestor = at(ancestor).parent;
        return ancestor;
    }

private:
    void collect(TreeContents contents);
    void addBindings();
    void assignIDs();
    void relate();
    void findSubsystems();
    void findModules();
    QByteArray moduleOfDriver(int driver) const;
    void nameAll(ClassNames &classNames);
    void nameHost();
    void countReferences();

    std::vector<HostObject> objects_;
    QHash<SysfsPath, int> byPath_;
};
