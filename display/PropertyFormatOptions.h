// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtGlobal>

// The display options of a number or data value.
struct PropertyFormatOptions
{
    // Units that are not a width in bytes.
    static constexpr qint64 unreadable = -7; // for a malformed descriptor
    static constexpr qint64 useDefault = -2;
    static constexpr qint64 automatic = -1;
    static constexpr qint64 characters = 0;

    enum ByteOrder : qint64 { NativeOrder = 0, BigEndian = 1, LittleEndian = 2 };

    qint64 unit = 0;                // bytes of one integer (1, 2, 4, 8), or one of the above
    qint64 encoding = 0;            // for characters; see TextEncodings
    qint64 base = 0;                // 2, 8, 10 or 16
    qint64 byteOrder = NativeOrder; // native: of the snapshot's machine
    qint64 signedness = 0;          // 1: signed, in base 10

    bool isInteger() const { return unit == 1 || unit == 2 || unit == 4 || unit == 8; }

    friend bool operator==(const PropertyFormatOptions &, const PropertyFormatOptions &) = default;
};
