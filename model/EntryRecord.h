// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/EntryList.h"
#include "model/NamesByPlane.h"
#include "model/PlaneMap.h"
#include "model/RegistryState.h"

#include <QDateTime>
#include <QStringList>

// What a snapshot holds of an entry, except its properties.
struct EntryRecord
{
    enum Flag : quint8 {
        RegistryRoot = 1,
        ConformsToDxService = 2,
        Registered = 4,
        Matched = 8,
        Active = 16,
    };

    // The longest path that programs can use; those of deeper objects are not kept.
    static constexpr qsizetype maxKernelPath = 4096;

    void setFlag(Flag flag, bool on)
    {
        flags = static_cast<quint8>(on ? flags | flag : flags & ~flag);
    }

    quint64 entryTag = 0;
    QDateTime dateDiscovered = {};
    QDateTime dateLastUpdated = {}; // null: never
    QDateTime dateTerminated = {};  // set before the state shows it
    QString bundleID = {};
    QStringList inheritance = {}; // most derived first
    QString name = {};            // in no plane in particular
    QString location = {};
    CompactString kernelPath = {}; // such as "/sys/bus/pci"; empty: none
    NamesByPlane namesInPlanes = {};
    NamesByPlane locationsInPlanes = {};
    PlaneMap<EntryList> childrenInPlanes = {};
    PlaneMap<EntryList> parentsInPlanes = {};
    RegistryState registryState = RegistryStateUnchanged;
    quint32 busyCount = 0;
    quint32 kernelRetainCount = 0;
    quint8 flags = 0;
};
