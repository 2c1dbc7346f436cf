// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/RegistryValue.h"
#include "model/linux/TextPool.h"

// The typed value of an attribute's bytes. The name decides for a few ambiguous texts.
RegistryValue parseAttribute(QByteArrayView name, QByteArrayView bytes, TextPool &pool);

// The value of a text without structure: a number, boolean, list of numbers or string.
RegistryValue parseScalar(QByteArrayView name, QByteArrayView text, TextPool &pool);
