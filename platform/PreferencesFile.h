#pragma once

#include <QCoreApplication>
#include <QJsonObject>
#include <QString>

// The JSON file of one preferences domain. A file that cannot be understood is set aside under
// another name; one that cannot be read or set aside is never written over.
class PreferencesFile
{
    Q_DECLARE_TR_FUNCTIONS(PreferencesFile)
public:
    struct Contents
    {
        QJsonObject values; // empty where there is no file
        QString problem;    // for the user; null if none
    };

    explicit PreferencesFile(const QString &path);

    const QString &path() const { return path_; }
    Contents read();
    bool isWritable() const { return !untouchable_; } // as far as read() found
    // Replaces the file as a whole or not at all. The problem for the user; null if written.
    QString write(const QJsonObject &values);

private:
    Contents keepUntouched(const QString &reason);
    Contents setAside(const QString &reason);

    QString path_;
    bool untouchable_ = false;
};
