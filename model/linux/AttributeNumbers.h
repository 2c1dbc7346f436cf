#pragma once

#include "model/RegistryValue.h"

#include <QByteArrayView>
#include <optional>

// Numbers as attributes write them; none for what is no number or too large.
namespace AttributeNumbers {
std::optional<quint64> parseUnsigned(QByteArrayView digits, int base);
// As a program would print it: no leading zeros, no plus sign.
RegistryValue decimalNumber(QByteArrayView text);
RegistryValue number(QByteArrayView text); // decimal, or hexadecimal with "0x"
// Of a line of several; empty when any word is none.
RegistryValue::Elements numbers(QByteArrayView line);
} // namespace AttributeNumbers
