// SPDX-License-Identifier: Apache-2.0
#include "platform/documents/RecentDocuments.h"

#include "platform/preferences/PreferencesStore.h"

#include <QFileInfo>

RecentDocuments::RecentDocuments()
    : observation_(NotificationCenter::defaultCenter().observe(
          PreferencesStore::didMergeNotification(), &PreferencesStore::shared(domain()),
          [this](const auto &) { Q_EMIT changed(); }))
{}

QString RecentDocuments::domain()
{
    return PreferencesStore::applicationIdentifier() + QStringLiteral(".documents");
}

QStringList RecentDocuments::files() const
{
    QStringList files;
    for (const auto &value :
         PreferencesStore::shared(domain()).list(PreferenceKeys::recentDocuments)) {
        const QString file = value.toString();
        if (QFileInfo(file).isAbsolute() && !files.contains(file) && files.size() < maxFiles)
            files.append(file);
    }
    return files;
}

void RecentDocuments::add(const QString &file)
{
    const QString path = QFileInfo(file).absoluteFilePath();
    PreferencesStore::shared(domain()).refresh();
    QStringList files = this->files();
    files.removeAll(path);
    files.prepend(path);
    store(files.mid(0, maxFiles));
}

void RecentDocuments::remove(const QString &file)
{
    PreferencesStore::shared(domain()).refresh();
    QStringList files = this->files();
    if (files.removeAll(file))
        store(files);
}

void RecentDocuments::store(const QStringList &files)
{
    PreferencesStore::shared(domain()).setValue(PreferenceKeys::recentDocuments,
                                                QJsonArray::fromStringList(files));
    Q_EMIT changed();
}
