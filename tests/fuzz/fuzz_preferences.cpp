// SPDX-License-Identifier: Apache-2.0
// The settings file: any bytes when it is opened and, after a NUL, what another copy of the program
// writes later. Readable settings are never lost, and unreadable files are kept.

#include "Fuzzing.h"
#include "platform/preferences/PreferencesStore.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QTemporaryDir>

namespace {
using Object = std::optional<QJsonObject>;

class Folder
{
public:
    QString path() const { return folder_.path(); }
    QString file() const { return folder_.filePath(QStringLiteral("test.json")); }
    QStringList files() const { return QDir(path()).entryList(QDir::Files | QDir::Hidden); }
    QByteArray read(const QString &name) const
    {
        QFile file(folder_.filePath(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    // Like another copy: as a new file.
    void put(const QByteArray &bytes) const
    {
        QFile file(folder_.filePath(QStringLiteral("new")));
        require(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
        file.close();
        QFile::remove(this->file());
        require(file.rename(this->file()));
    }
    bool isKept(const QByteArray &bytes) const
    {
        const QStringList names = files();
        return std::any_of(names.begin(), names.end(), [&](const QString &name) {
            return name.contains(QLatin1String(".damaged-")) && read(name) == bytes;
        });
    }

private:
    QTemporaryDir folder_;
};

// After writing it once, since not every number and text can be stored.
Object readable(const QByteArray &bytes)
{
    const QJsonDocument document = QJsonDocument::fromJson(bytes);
    if (!document.isObject())
        return std::nullopt;
    return QJsonDocument::fromJson(document.toJson()).object();
}

QString keyInNone(std::initializer_list<Object> objects)
{
    QString key = QStringLiteral("own");
    const auto hasKey = [&](const Object &object) { return object && object->contains(key); };
    while (std::any_of(objects.begin(), objects.end(), hasKey))
        key += u'+';
    return key;
}
} // namespace

int LLVMFuzzerTestOneInput(const quint8 *data, std::size_t size)
{
    const QByteArray input = fuzzedBytes(data, size);
    const qsizetype end = input.indexOf('\0');
    const QByteArray before = end < 0 ? input : input.first(end);
    const QByteArray after = input.mid(end + 1); // the same without a NUL
    const Object old = readable(before);
    const Object current = readable(after);
    const QString key = keyInNone({old, current});
    const Folder folder;
    folder.put(before);
    {
        PreferencesStore store(QStringLiteral("test"), folder.path());
        require(store.problems().isEmpty() == old.has_value());
        require(store.storedKeys().size() == old.value_or(QJsonObject()).size());
        if (end >= 0)
            folder.put(after);
        store.setValue(key, 1);
        require(store.synchronize());
    }
    QJsonObject expected = current ? *current : old.value_or(QJsonObject());
    expected.insert(key, 1);
    require(readable(folder.read(QStringLiteral("test.json"))) == expected);
    require(old || folder.isKept(before));
    require(current || folder.isKept(after));
    const int damaged = !old + (end >= 0 && !current);
    require(folder.files().size() == 1 + damaged);
    return 0;
}
