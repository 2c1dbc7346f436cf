// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

// What a snapshot records about its machine.
struct HostInformation
{
    QString computerName;      // null: unknown
    quint32 processorType = 0; // 7 for 32-bit x86, 0x1000007 for 64-bit x86; 0 for any other
    qint32 byteOrder = 0;      // 1 little-endian, 2 big-endian; 0 unknown

    // The pretty host name, else the host name; the processor type of the running process.
    static HostInformation ofThisMachine();
    // For a machine type such as "x86_64". Most types leave the byte order open.
    static HostInformation ofMachine(const QString &computerName, const QString &machineType);
};
