// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "display/PropertyFormatOptions.h"

#include <QString>

// The short text that stores a format: "a" automatic, "d" default, "s30b" characters in encoding
// 30, big-endian; "4xhu" four-byte units in hexadecimal, native order, unsigned.
class PropertyFormatDescriptor
{
public:
    // Null for options without a descriptor.
    static QString descriptorForPropertyFormats(const PropertyFormatOptions &options);
    // A null or malformed descriptor gives the unit unreadable and 0 for the rest.
    static PropertyFormatOptions propertyFormatForDescriptor(const QString &descriptor);
};
