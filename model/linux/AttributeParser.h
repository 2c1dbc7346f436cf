#pragma once

#include "model/RegistryValue.h"
#include "model/linux/TextPool.h"

// The typed value of an attribute's bytes. The name matters to a few whose text alone is ambiguous.
RegistryValue parseAttribute(QByteArrayView name, QByteArrayView bytes, TextPool &pool);

// The value of a text known to be a single one: a number, a truth, a list of numbers or a string.
RegistryValue parseScalar(QByteArrayView name, QByteArrayView text, TextPool &pool);
