// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/RegistryService.h"
#include "store/TavDataStore.h"

#include <QCoreApplication>

class CommandInput;

// The registry that a command is about: of this machine, of a sysfs tree, or of a snapshot.
class RegistrySource
{
    Q_DECLARE_TR_FUNCTIONS(RegistrySource)
public:
    // What must be read of a registry that is not a snapshot. Structure: names, links, states and
    // IDs; the properties of single entries with readWhole.
    enum class Need : quint8 { Structure, Properties };

    explicit RegistrySource(const CommandInput &input);
    RegistrySource(QString sysfs, QString file);
    // A folder is a sysfs tree, all else a snapshot.
    static std::unique_ptr<RegistrySource> named(const QString &argument);
    ~RegistrySource();

    // Reads it at the first call. Throws CommandError.
    TavDataStore &store(Need need);
    TavDataStore &reread(); // not of a snapshot; the store before is gone
    void readWhole(std::span<TavRegistryEntry *const> entries);

    RegistryService &service() { return *service_; } // once the store is there; of no snapshot
    // The registry of the running kernel, which sends events.
    bool isRunningKernel() const;
    bool isSnapshot() const { return !file_.isNull(); }
    const QString &sysfs() const { return sysfs_; }
    const QString &file() const { return file_; } // null: no snapshot

private:
    void openService(Need need);
    std::unique_ptr<TavDataStore> decode() const;
    QByteArray content() const;

    QString sysfs_;
    QString file_; // null: none
    std::unique_ptr<RegistryService> service_;
    std::unique_ptr<TavDataStore> store_; // uses the service
};
