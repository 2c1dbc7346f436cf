#pragma once

#include <QCoreApplication>
#include <QJsonObject>
#include <QString>
#include <optional>

// The JSON file of one preferences domain. A file that cannot be understood is set aside under
// another name; one that cannot be read or set aside is never written over.
class PreferencesFile
{
    Q_DECLARE_TR_FUNCTIONS(PreferencesFile)
public:
    struct Contents
    {
        std::optional<QJsonObject> values; // none without a file, or one that cannot be used
        QString problem;                   // for the user; null if none
    };

    explicit PreferencesFile(const QString &path);

    const QString &path() const { return path_; }
    Contents read();
    // As read(), but a file that cannot be used is left alone: somebody may be writing it.
    std::optional<QJsonObject> peek();
    // Whether the file may differ from what was last read or written.
    bool hasChanged() const { return !(stampOf(path_) == stamp_); }
    bool isWritable() const { return !untouchable_; } // as far as read() found
    // Replaces the file as a whole or not at all. The problem for the user; null if written.
    QString write(const QJsonObject &values);

private:
    // Differs between two states of a file.
    struct Stamp
    {
        quint64 device = 0;
        quint64 inode = 0;
        qint64 size = -1; // no file
        qint64 seconds = 0;
        qint64 nanoseconds = 0;

        friend bool operator==(const Stamp &, const Stamp &) = default;
    };
    struct Failure
    {
        bool isDamaged = false; // or else out of reach
        QString reason;
    };

    static Stamp stampOf(const QString &path);
    std::optional<QJsonObject> load(Failure &failure);
    Contents keepUntouched(const QString &reason);
    Contents setAside(const QString &reason);

    QString path_;
    Stamp stamp_;
    bool untouchable_ = false;
};
