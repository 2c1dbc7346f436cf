#include "platform/PreferencesFile.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonDocument>
#include <QSaveFile>

namespace {
constexpr qint64 largestFile = 64 * 1024 * 1024;
constexpr int mostSetAside = 1000;
} // namespace

PreferencesFile::PreferencesFile(const QString &path)
    : path_(path)
{}

PreferencesFile::Contents PreferencesFile::read()
{
    const QFileInfo info(path_);
    if (!info.exists() && !info.isSymLink())
        return {};
    // Opening anything else could block, or never end.
    if (info.exists() && !info.isFile())
        return keepUntouched(tr("it is not a regular file"));
    if (info.size() > largestFile)
        return setAside(tr("it is too large"));
    QFile file(path_);
    if (!info.exists() || !file.open(QIODevice::ReadOnly))
        return keepUntouched(info.exists() ? file.errorString() : tr("its target is missing"));
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError)
        return keepUntouched(file.errorString());

    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(bytes, &error);
    if (error.error != QJsonParseError::NoError)
        return setAside(error.errorString());
    if (!document.isObject())
        return setAside(tr("it holds no JSON object"));
    return {document.object(), {}};
}

PreferencesFile::Contents PreferencesFile::keepUntouched(const QString &reason)
{
    untouchable_ = true;
    return {{},
            tr("The settings file %1 cannot be used (%2). Default settings apply, and "
               "changed settings will not be saved.")
                .arg(path_, reason)};
}

PreferencesFile::Contents PreferencesFile::setAside(const QString &reason)
{
    for (int i = 1; i <= mostSetAside; ++i) {
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
    if (untouchable_)
        return tr("Settings are not saved, because the file %1 cannot be used.").arg(path_);
    QDir().mkpath(QFileInfo(path_).path());
    QSaveFile file(path_);
    if (file.open(QIODevice::WriteOnly) && file.write(QJsonDocument(values).toJson()) >= 0 &&
        file.commit())
        return {};
    return tr("Settings cannot be saved in %1 (%2).").arg(path_, file.errorString());
}
