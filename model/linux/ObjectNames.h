// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/linux/HostObject.h"

namespace ObjectNames {
// A text of the host as a name: trimmed, "/" replaced by "!", no control characters, at most 127
// bytes.
QByteArray sanitized(const QString &text);

// A kernel name with invalid UTF-8 replaced, cut at a character boundary.
QByteArray validUtf8(const QByteArray &kernelName, qsizetype maxSize);

NameAndLocation ofDevice(const HostObject &device);
// In the firmware plane: the last part of the firmware path.
NameAndLocation ofFirmwareDevice(const HostObject &device);
// For an object with only a kernel name.
NameAndLocation ofKernelName(const QByteArray &kernelName);
} // namespace ObjectNames
