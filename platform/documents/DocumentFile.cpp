// SPDX-License-Identifier: Apache-2.0
#include "platform/documents/DocumentFile.h"

#include "platform/documents/ReplacementFile.h"

#include <QCoreApplication>
#include <QFileInfo>

namespace {
constexpr qint64 beginningSize = 64;

QString tr(const char *text)
{
    return QCoreApplication::translate("DocumentFile", text);
}

DocumentError openError(const QString &file, QFileDevice::FileError code, const QString &reason)
{
    return {DocumentFile::errorDomain, code,
            tr("The document “%1” could not be opened.").arg(QFileInfo(file).fileName()), reason};
}

DocumentError saveError(const QString &file, QFileDevice::FileError code, const QString &reason)
{
    return {DocumentFile::errorDomain, code,
            tr("The document “%1” could not be saved.").arg(QFileInfo(file).fileName()), reason};
}
} // namespace

std::optional<QByteArray>
DocumentFile::read(const QString &path,
                   const std::function<bool(const QByteArray &, DocumentError &)> &checkBeginning,
                   DocumentError &error)
{
    const auto fail = [&](QFileDevice::FileError code, const QString &reason) {
        error = openError(path, code, reason);
        return std::nullopt;
    };
    const QFileInfo info(path);
    if (!info.exists())
        return fail(QFileDevice::OpenError, tr("There is no such file."));
    if (info.isDir())
        return fail(QFileDevice::OpenError, tr("It is a folder."));
    // Opening a pipe or a device could block forever.
    if (!info.isFile())
        return fail(QFileDevice::OpenError, tr("It is not a regular file."));
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return fail(file.error(), file.errorString());
    if (!checkBeginning(file.peek(beginningSize), error))
        return std::nullopt;
    if (file.size() > maxSize)
        return fail(QFileDevice::ReadError, tr("It is too large."));
    QByteArray data = file.readAll();
    if (file.error() != QFileDevice::NoError)
        return fail(file.error(), file.errorString());
    return data;
}

bool DocumentFile::write(const QString &path,
                         const std::function<bool(QIODevice &, DocumentError &)> &content,
                         DocumentError &error)
{
    const QFileInfo info(path);
    if (info.exists() && !info.isFile()) { // saving would replace it by a file
        error = saveError(path, QFileDevice::OpenError,
                          info.isDir() ? tr("It is a folder.") : tr("It is not a regular file."));
        return false;
    }
    ReplacementFile file(path);
    DocumentError problem;
    if (file.open() && content(file.content(), problem)) {
        if (file.size() > maxSize)
            problem = {errorDomain, QFileDevice::WriteError, {}, tr("It would be too large.")};
        else if (file.commit())
            return true;
    }
    if (problem.reason.isNull())
        problem = {errorDomain, file.error(), {}, file.errorString()};
    error = problem;
    error.description = saveError(path, QFileDevice::NoError, {}).description;
    return false;
}

DocumentError DocumentFile::memoryError(const QString &file)
{
    return openError(file, QFileDevice::ResourceError, tr("There is not enough memory."));
}

DocumentError DocumentFile::cancelledError(const QString &file)
{
    return openError(file, QFileDevice::AbortError, tr("Opening it was cancelled."));
}

bool DocumentFile::isCancelled(const DocumentError &error)
{
    return error.domain == errorDomain && error.code == QFileDevice::AbortError;
}
