#pragma once

#include <QCryptographicHash>
#include <QLatin1String>

// Fixed facts of the archive container, described in docs/archive-format.md.
struct ArchiveFormat
{
    static constexpr QLatin1String signature{"\xd9\xd9\xf7"}; // how every archive begins
    static constexpr quint64 signatureTag = 55799;            // the same, read
    static constexpr QLatin1String name{"vandrel-archive"};
    static constexpr int version = 1;
    static constexpr qsizetype digestedEnd = 34; // the digest as writers put it at the end
    static constexpr auto digest = QCryptographicHash::Blake2b_256;
    // Of lists and dictionaries within one value; graphs of objects are not nested.
    static constexpr int deepestNesting = 64;
};
