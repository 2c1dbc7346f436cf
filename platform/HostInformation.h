#pragma once

#include <QString>

namespace HostInformation {
// The pretty host name, else the host name, else null.
QString computerName();

// The processor type of the running process: 7 for 32-bit x86, 0x1000007 for 64-bit x86; 0 for any
// other.
quint32 processorType();

// 1 little-endian, 2 big-endian.
qint32 byteOrder();
} // namespace HostInformation
