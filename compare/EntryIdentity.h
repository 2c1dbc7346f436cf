// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/TavRegistryEntry.h"

class VolatileAttributes;

// What a device keeps when it moves or gets another name. Texts are equal for one device and, as
// far as the kernel knows, differ for two.
namespace EntryIdentity {
enum class Kind : quint8 { BusAddress, Serial, Mac, Wwn, Uuid, DmiHandle };
inline constexpr Kind kinds[] = {Kind::BusAddress, Kind::Serial, Kind::Mac,
                                 Kind::Wwn,        Kind::Uuid,   Kind::DmiHandle};

QString textOf(const TavRegistryEntry &entry, Kind kind); // empty: none
QString subsystemOf(const TavRegistryEntry &entry);       // such as "net"; empty: none
QString subsystemOrClass(const TavRegistryEntry &entry);  // its class if it has no subsystem
// Its class, modalias and all of the above: equal for exchangeable devices at one place. Empty if
// it has no modalias and is not numbered by discovery.
QString likeness(const TavRegistryEntry &entry, const VolatileAttributes &volatileAttributes);
// The name without the number that it got by discovery.
QString nameWithoutNumber(const QString &name);
// A property that is a text, at a path of keys.
QString propertyText(const TavRegistryEntry &entry, QStringView key);
} // namespace EntryIdentity
