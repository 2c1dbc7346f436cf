// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/RegistryValue.h"

#include <QByteArrayView>
#include <optional>

// Numbers in the formats of attributes; none for other texts and numbers that are too large.
namespace AttributeNumbers {
std::optional<quint64> parseUnsigned(QByteArrayView digits, int base);
// In canonical form: no leading zeros, no plus sign.
RegistryValue decimalNumber(QByteArrayView text);
RegistryValue number(QByteArrayView text); // decimal, or hexadecimal with "0x"
// Of a line; empty if any word is not a number.
RegistryValue::Elements numbers(QByteArrayView line);
} // namespace AttributeNumbers
