// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QCoreApplication>
#include <QJsonObject>
#include <QString>
#include <optional>

// The JSON file of one preferences domain. A damaged file is renamed; one that cannot be read or
// renamed is never overwritten.
class PreferencesFile
{
    Q_DECLARE_TR_FUNCTIONS(PreferencesFile)
public:
    struct Contents
    {
        std::optional<QJsonObject> values; // empty for a missing or unusable file
        QString problem;                   // for the user; null if none
    };

    explicit PreferencesFile(const QString &path);

    const QString &path() const { return path_; }
    Contents read();
    // Like read(), but leaves an unusable file alone: another copy may be writing it.
    std::optional<QJsonObject> peek();
    // Whether the file may have changed since the last read or write.
    bool hasChanged() const { return !(stampOf(path_) == stamp_); }
    bool isWritable() const { return !isReadOnly_; } // according to the last read()
    // Replaces the file completely or not at all. Returns the problem for the user; null on
    // success.
    QString write(const QJsonObject &values);

private:
    // Identifies a state of the file.
    struct Stamp
    {
        quint64 device = 0;
        quint64 inode = 0;
        qint64 size = -1; // -1: no file
        qint64 seconds = 0;
        qint64 nanoseconds = 0;

        friend bool operator==(const Stamp &, const Stamp &) = default;
    };
    struct Failure
    {
        bool isDamaged = false; // else it cannot be read
        QString reason;
    };

    static Stamp stampOf(const QString &path);
    std::optional<QJsonObject> load(Failure &failure);
    Contents keepUntouched(const QString &reason);
    Contents setAside(const QString &reason);

    QString path_;
    Stamp stamp_;
    bool isReadOnly_ = false;
};
