#pragma once

#include "platform/documents/DocumentError.h"

#include <QByteArray>
#include <functional>
#include <optional>

class QIODevice;

// The files of documents, which may be anything that the user points at.
namespace DocumentFile {
inline const QString errorDomain = QStringLiteral("FileErrorDomain");

// More than any snapshot takes, and less than would leave the machine without memory. What is
// larger is neither read nor written.
inline constexpr qint64 largestSize = qint64(1) << 30;

// The whole content, unless its beginning is refused.
std::optional<QByteArray>
read(const QString &file,
     const std::function<bool(const QByteArray &, DocumentError &)> &checkBeginning,
     DocumentError &error);
// Replaces the file as a whole or not at all.
bool write(const QString &file, const std::function<bool(QIODevice &, DocumentError &)> &content,
           DocumentError &error);
// For a file that was not read for want of memory.
DocumentError memoryError(const QString &file);
// For one whose reading the user has ended: nothing to tell the user of.
DocumentError cancelledError(const QString &file);
bool isCancelled(const DocumentError &error);
} // namespace DocumentFile
