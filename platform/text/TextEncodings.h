// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArrayView>
#include <QString>
#include <optional>
#include <vector>

// The host's text encodings, each identified by a number: a few keep legacy numbers, all others
// have 65536 plus their number in the registry of character sets. Main thread only.
class TextEncodings
{
public:
    static constexpr quint32 ascii = 1;
    static constexpr quint32 utf8 = 4;
    static constexpr quint32 isoLatin1 = 5;
    static constexpr quint32 utf16 = 10; // big-endian without a byte-order mark
    static constexpr quint32 windowsLatin1 = 12;
    static constexpr quint32 kelRoman = 30;
    static constexpr quint32 none = 0xffffffff;

    // The available encodings in ascending order.
    static const std::vector<quint32> &available();
    // The name for the user, such as "Western (ISO Latin 1)"; null for an unavailable encoding.
    static QString displayName(quint32 encoding);
    // utf16 for the whole UTF family, else the lowest 8-bit encoding of the same script; none for
    // an unavailable encoding.
    static quint32 mostCompatibleLegacyEncoding(quint32 encoding);
    // The encoding of the user's locale; none if it is unavailable.
    static quint32 cStringEncoding();

    // Empty if the encoding is unavailable or any bytes are invalid in it.
    static std::optional<QString> decode(QByteArrayView bytes, quint32 encoding);
};
