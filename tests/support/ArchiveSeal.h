// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>

// Appends the digest to an archive's content, so that modified content gets past the check.
QByteArray sealArchive(const QByteArray &content);
// The content of a valid archive, without the digest.
QByteArray unsealArchive(const QByteArray &archive);
