// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "checks/Measurement.h"
#include "model/DeviceNodes.h"
#include "model/ModuleCatalog.h"

#include <QHash>
#include <QStringList>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

class CheckedRegistry;
class TavDataStore;
class TavRegistryEntry;

// An entry as checks see it: its properties, and the entries that it stands with. Unchangeable, so
// any thread may read it.
class CheckedEntry
{
public:
    quint64 tag() const { return tag_; }
    // The last part of its subsystem, such as "net"; of an entry without one, its class.
    const QString &subsystem() const { return subsystem_; }
    QString kernelPath() const { return kernelPath_.toOwner(); } // "/sys/devices/…"; empty: none
    QString kernelName() const;
    const QStringList &inheritance() const { return inheritance_; }
    const RegistryValue &table() const { return table_; }
    QString driver() const { return linkName(u"driver"); } // empty: none is bound

    const CheckedEntry *parent() const; // in the service plane; null: none
    std::vector<const CheckedEntry *> children() const;
    const CheckedRegistry &registry() const { return *registry_; }
    bool isUnchanged() const { return isUnchanged_; } // since the registry before

    // At a path of keys, such as u"power/runtime_status".
    const RegistryValue &value(QStringView path) const;
    bool has(QStringView path) const { return !value(path).isNone(); }
    QString text(QStringView path) const;                        // trimmed; empty: none, or no text
    std::optional<qint64> number(QStringView path) const;        // none: it is none
    std::optional<qint64> rise(QStringView path) const;          // of a counter that was read twice
    std::optional<double> leadingNumber(QStringView path) const; // of "8.0 GT/s PCIe"
    QString linkName(QStringView path) const;                    // the last part of a link's target
    const CheckedEntry *linkTarget(QStringView path) const;      // null: none

private:
    friend class CheckedRegistry;
    void noteUnknownForm(QStringView path) const;

    const CheckedRegistry *registry_ = nullptr;
    quint64 tag_ = 0;
    QString subsystem_;
    CompactString kernelPath_;
    QStringList inheritance_;
    RegistryValue table_;
    RegistryValue earlier_; // the table a moment before; none: it was read once
    bool isUnchanged_ = false;
    int parent_ = -1; // places in the registry; -1: none
    int firstChild_ = -1;
    int nextSibling_ = -1;
};

// The entries of a store at one moment, without those that have gone. Made in steps: what entries
// hold is taken in slices on the main thread, and put in order by finish, on any thread.
class CheckedRegistry
{
public:
    CheckedRegistry() = default;
    explicit CheckedRegistry(const TavDataStore &store) { add(store); }
    CheckedRegistry(const CheckedRegistry &) = delete;
    CheckedRegistry &operator=(const CheckedRegistry &) = delete;

    // Null: which modules the machine has is not known.
    void setModules(std::shared_ptr<const ModuleCatalog> modules) { modules_ = std::move(modules); }
    const ModuleCatalog *modules() const { return modules_.get(); }
    void setDeviceNodes(std::shared_ptr<const DeviceNodes> nodes)
    {
        deviceNodes_ = std::move(nodes);
    }
    const DeviceNodes *deviceNodes() const { return deviceNodes_.get(); }
    // Modules and nodes of the machine that a live store is of; main thread only.
    void setMachine(const TavDataStore &store);
    void add(const TavDataStore &store); // as a whole, and finishes
    void reserve(std::size_t count) { entries_.reserve(count); }
    // Main thread only. With the tables of the entry as they were measured, if it was.
    void add(const TavRegistryEntry &entry, const Measurement::Tables &measured = {});
    // When all are added. Notes which entries are as they were in a registry before; null: none.
    void finish(const CheckedRegistry *before = nullptr);

    const std::vector<CheckedEntry> &entries() const { return entries_; }
    const std::vector<const CheckedEntry *> &ofSubsystem(const QString &name) const;
    const CheckedEntry *atLink(const QString &target) const; // "devices/…"; null: none

private:
    friend class CheckedEntry;

    using Places = std::vector<int>; // of entries, by their numbers in their store; -1: none

    void linkParents();
    void noteUnchanged(const CheckedRegistry &before);

    std::shared_ptr<const ModuleCatalog> modules_;
    std::shared_ptr<const DeviceNodes> deviceNodes_;
    std::vector<CheckedEntry> entries_;
    std::vector<quint32> numbers_;       // of the entries in their store
    std::vector<quint32> parentNumbers_; // likewise; of the parents, until finish
    Places places_;
    QHash<QString, std::vector<const CheckedEntry *>> subsystems_;
    mutable std::once_flag hasKernelPaths_; // few checks follow links
    mutable QHash<QString, const CheckedEntry *> kernelPaths_;
};
