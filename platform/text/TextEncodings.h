#pragma once

#include <QByteArrayView>
#include <QString>
#include <optional>
#include <vector>

// The text encodings of the host, each known by a number: a few have short ones of old, any
// other has 65536 more than its number in the registry of character sets. Main thread only.
class TextEncodings
{
public:
    static constexpr quint32 ascii = 1;
    static constexpr quint32 utf8 = 4;
    static constexpr quint32 isoLatin1 = 5;
    static constexpr quint32 utf16 = 10; // big-endian unless a byte-order mark says otherwise
    static constexpr quint32 windowsLatin1 = 12;
    static constexpr quint32 kelRoman = 30;
    static constexpr quint32 none = 0xffffffff;

    // Those that can be decoded here, by ascending number.
    static const std::vector<quint32> &available();
    // For the user, such as "Western (ISO Latin 1)"; null for an encoding that is not available.
    static QString displayName(quint32 encoding);
    // utf16 for the whole UTF family, else the lowest 8-bit encoding of the same script; none for
    // an encoding that is not available.
    static quint32 mostCompatibleLegacyEncoding(quint32 encoding);
    // What NUL-terminated strings are in, by the user's locale; none if it is not available.
    static quint32 cStringEncoding();

    // None if the encoding is not available or any of the bytes means nothing in it.
    static std::optional<QString> decode(QByteArrayView bytes, quint32 encoding);
};
