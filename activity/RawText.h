// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QStringList>

class RegistryValue;

// Values as the host wrote them; data in hexadecimal. A collection has a line for each scalar in
// it.
namespace RawText {
QString of(const RegistryValue &scalar);
QStringList linesOf(const RegistryValue &value);
} // namespace RawText
