// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QCryptographicHash>
#include <QLatin1String>

// Constants of the archive container, described in docs/archive-format.md.
struct ArchiveFormat
{
    static constexpr QLatin1String signature{"\xd9\xd9\xf7"}; // the first bytes of an archive
    static constexpr quint64 signatureTag = 55799;            // the tag that they encode
    static constexpr QLatin1String name{"vandrel-archive"};
    static constexpr int version = 1;
    static constexpr qsizetype digestSize = 34; // of the digest's item, in bytes
    static constexpr auto digest = QCryptographicHash::Blake2b_256;
    // Limits lists and dictionaries within one value, not the graph of objects.
    static constexpr int maxNesting = 64;
};
