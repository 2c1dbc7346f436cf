#pragma once

#include "platform/DocumentError.h"

#include <QByteArray>
#include <functional>
#include <optional>

class QIODevice;

// The files of documents, which may be anything that the user points at.
namespace DocumentFile {
inline const QString errorDomain = QStringLiteral("FileErrorDomain");

// The whole content, unless its beginning is refused.
std::optional<QByteArray>
read(const QString &file,
     const std::function<bool(const QByteArray &, DocumentError &)> &checkBeginning,
     DocumentError &error);
// Replaces the file as a whole or not at all.
bool write(const QString &file, const std::function<bool(QIODevice &, DocumentError &)> &content,
           DocumentError &error);
} // namespace DocumentFile
