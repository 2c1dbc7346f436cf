// SPDX-License-Identifier: Apache-2.0
#pragma once

class TavRegistryEntry;

// What kind of thing an entry is, as far as it has an icon of its own.
enum class EntryKind {
    Device, // any other
    Bridge,
    Bus,
    Card,
    Class,
    Computer,
    Container,
    Cpu,
    Disk,
    Screen,
    Driver,
    Firmware,
    Input,
    Memory,
    Module,
    Network,
    Partition,
    Power,
    Sensor,
    Sound,
    Usb,
    Count
};

EntryKind entryKind(const TavRegistryEntry &entry);
const char *entryKindName(EntryKind kind); // in lower case, such as "disk"
// The symbolic icon that themes have for it; empty: none is common.
const char *freedesktopName(EntryKind kind);
