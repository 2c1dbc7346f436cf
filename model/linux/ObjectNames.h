#pragma once

#include "model/linux/HostObject.h"

namespace ObjectNames {
// A text of the host's as a name: trimmed, "/" as "!", no control characters, at most 127 bytes.
QByteArray sanitized(const QString &text);

// A kernel name, with replacement characters where it is not UTF-8, cut at a character.
QByteArray validUtf8(const QByteArray &kernelName, qsizetype longest);

NameAndLocation ofDevice(const HostObject &device);
// A firmware device in the firmware plane: the last part of its firmware path.
NameAndLocation ofFirmwareDevice(const HostObject &device);
// For what has no more than its kernel name.
NameAndLocation ofKernelName(const QByteArray &kernelName);
} // namespace ObjectNames
