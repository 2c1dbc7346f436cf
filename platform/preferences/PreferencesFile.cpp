// SPDX-License-Identifier: Apache-2.0
#include "platform/preferences/PreferencesFile.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonDocument>
#include <QSaveFile>
#include <sys/stat.h>

namespace {
constexpr qint64 maxFileSize = 64 * 1024 * 1024;
constexpr int maxDamagedFiles = 1000;
} // namespace

PreferencesFile::PreferencesFile(const QString &path)
    : path_(path)
{}

PreferencesFile::Stamp PreferencesFile::stampOf(const QString &path)
{
    struct stat status;
    if (::stat(QFile::encodeName(path).constData(), &status) != 0)
        return {};
    return {status.st_dev, status.st_ino, status.st_size, status.st_mtim.tv_sec,
            status.st_mtim.tv_nsec};
}

PreferencesFile::Contents PreferencesFile::read()
{
    isReadOnly_ = false;
    Failure failure;
    if (auto values = load(failure))
        return {std::move(values), {}};
    if (failure.reason.isNull())
        return {};
    return failure.isDamaged ? setAside(failure.reason) : keepUntouched(failure.reason);
}

std::optional<QJsonObject> PreferencesFile::peek()
{
    Failure failure;
    return load(failure);
}

// A missing file is not a failure.
std::optional<QJsonObject> PreferencesFile::load(Failure &failure)
{
    const auto fail = [&failure](bool isDamaged, const QString &reason) {
        failure = {isDamaged, reason};
        return std::nullopt;
    };
    const Stamp stamp = stampOf(path_);
    stamp_ = {}; // read an unusable file again next time
    const QFileInfo info(path_);
    if (!info.exists())
        return info.isSymLink() ? fail(false, tr("its target is missing")) : std::nullopt;
    // Opening anything else could block forever.
    if (!info.isFile())
        return fail(false, tr("it is not a regular file"));
    if (info.size() > maxFileSize)
        return fail(true, tr("it is too large"));
    QFile file(path_);
    if (!file.open(QIODevice::ReadOnly))
        return fail(false, file.errorString());
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError)
        return fail(false, file.errorString());

    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(bytes, &error);
    if (error.error != QJsonParseError::NoError)
        return fail(true, error.errorString());
    if (!document.isObject())
        return fail(true, tr("it holds no JSON object"));
    stamp_ = stamp;
    return document.object();
}

PreferencesFile::Contents PreferencesFile::keepUntouched(const QString &reason)
{
    isReadOnly_ = true;
    return {{},
            tr("The settings file %1 cannot be used (%2). Default settings apply, and "
               "changed settings will not be saved.")
                .arg(path_, reason)};
}

PreferencesFile::Contents PreferencesFile::setAside(const QString &reason)
{
    for (int i = 1; i <= maxDamagedFiles; ++i) {
        const QString target = path_ + QStringLiteral(".damaged-%1").arg(i);
        if (QFileInfo::exists(target))
            continue;
        if (!QFile::rename(path_, target))
            break;
        return {{},
                tr("The settings file %1 is damaged (%2). It has been kept as %3, and "
                   "default settings apply.")
                    .arg(path_, reason, target)};
    }
    return keepUntouched(reason);
}

QString PreferencesFile::write(const QJsonObject &values)
{
    if (isReadOnly_)
        return tr("Settings are not saved, because the file %1 cannot be used.").arg(path_);
    QDir().mkpath(QFileInfo(path_).path());
    QSaveFile file(path_);
    if (file.open(QIODevice::WriteOnly) && file.write(QJsonDocument(values).toJson()) >= 0 &&
        file.commit()) {
        stamp_ = stampOf(path_);
        return {};
    }
    return tr("Settings cannot be saved in %1 (%2).").arg(path_, file.errorString());
}
