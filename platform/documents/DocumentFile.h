// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/documents/DocumentError.h"

#include <QByteArray>
#include <functional>
#include <optional>

class QIODevice;

// Reads and writes the files of documents, which are untrusted.
namespace DocumentFile {
inline const QString errorDomain = QStringLiteral("FileErrorDomain");

// Larger than any real snapshot and small enough for the memory. Larger files are neither read nor
// written.
inline constexpr qint64 maxSize = qint64(1) << 30;

// Reads the whole content, unless its start is refused.
std::optional<QByteArray>
read(const QString &file,
     const std::function<bool(const QByteArray &, DocumentError &)> &checkBeginning,
     DocumentError &error);
// Replaces the file completely or not at all.
bool write(const QString &file, const std::function<bool(QIODevice &, DocumentError &)> &content,
           DocumentError &error);
// The error for a file that does not fit into memory.
DocumentError memoryError(const QString &file);
// The error for a file whose reading the user cancelled; needs no message.
DocumentError cancelledError(const QString &file);
bool isCancelled(const DocumentError &error);
} // namespace DocumentFile
