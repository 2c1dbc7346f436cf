#pragma once

#include "display/PropertyFormatOptions.h"

#include <QString>

// The short text that a format is stored as: "a" automatic, "d" default, "s30b" characters in
// encoding 30, big-endian; "4xhu" four-byte units in hexadecimal, native order, unsigned.
class PropertyFormatDescriptor
{
public:
    // Null for options that have none.
    static QString descriptorForPropertyFormats(const PropertyFormatOptions &options);
    // The unit is unreadable, and all else 0, where the descriptor is none or malformed.
    static PropertyFormatOptions propertyFormatForDescriptor(const QString &descriptor);
};
