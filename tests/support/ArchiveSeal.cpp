// SPDX-License-Identifier: Apache-2.0
#include "tests/support/ArchiveSeal.h"

#include "platform/archive/ArchiveFormat.h"

static const QByteArray digestHead("\x58\x20"); // a byte string of 32 bytes

QByteArray sealArchive(const QByteArray &content)
{
    return content + digestHead + QCryptographicHash::hash(content, ArchiveFormat::digest);
}

QByteArray unsealArchive(const QByteArray &archive)
{
    return archive.chopped(digestHead.size() +
                           QCryptographicHash::hashLength(ArchiveFormat::digest));
}
