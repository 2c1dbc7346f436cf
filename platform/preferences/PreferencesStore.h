// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/preferences/FileWatch.h"
#include "platform/preferences/PreferenceKeys.h"
#include "platform/preferences/PreferencesFile.h"

#include <QHash>
#include <QJsonArray>
#include <QSet>
#include <QStringList>
#include <QTimer>
#include <chrono>
#include <memory>

// The user's settings of one domain in a JSON file that running copies of the program share. Keys
// are stored verbatim. Changes are written when the event loop is next idle, in synchronize() and
// on exit: only the keys set or removed since the last write; all others are merged from the file.
// Main thread only.
class PreferencesStore
{
public:
    // Posted to the default notification center with the store as object: after each change of a
    // value, after a merge of values that another copy wrote (when the event loop is next idle,
    // after a change notification), and after each new problem.
    static QString didChangeNotification() { return QStringLiteral("Preferences changed"); }
    static QString didMergeNotification() { return QStringLiteral("Preferences merged"); }
    static QString problemNotification() { return QStringLiteral("Preferences problem"); }

    static QString applicationIdentifier() { return QStringLiteral("org.vandrel.Vandrel"); }

    // The program's own settings, and those of another domain; opened on first use. Process-wide,
    // because two stores on one file would overwrite each other's changes.
    static PreferencesStore &standard() { return shared(applicationIdentifier()); }
    static PreferencesStore &shared(const QString &domain);
    // Sets the folder of the shared stores and closes those that are open: references to them
    // become invalid.
    static void setFolder(const QString &folder);
    // For programs that read the settings once: the shared stores do not watch their files. Call it
    // before the first use.
    static void watchNoFiles();

    enum class Watch : quint8 { File, Nothing };
    PreferencesStore(const QString &domain, const QString &folder, Watch watch = Watch::File);
    ~PreferencesStore();
    PreferencesStore(const PreferencesStore &) = delete;
    PreferencesStore &operator=(const PreferencesStore &) = delete;

    // Registered values apply while a key has no stored one. They are not written.
    void registerDefaults(const QJsonObject &defaults);

    QJsonValue value(const QString &key) const; // undefined if neither stored nor registered
    bool isStored(const QString &key) const { return values_.contains(key); }
    bool isEmpty() const { return values_.isEmpty(); } // ignores registered values
    QStringList storedKeys() const { return values_.keys(); }

    // A stored value of another type counts as not stored.
    QString string(TextKey key) const { return string(key.toString()); }
    qint64 integer(IntegerKey key) const { return integer(key.toString()); }
    bool flag(FlagKey key) const { return flag(key.toString()); }
    QJsonArray list(ListKey key) const { return list(key.toString()); }
    QString string(const QString &key) const;
    QString registeredString(const QString &key) const; // ignores what is stored
    qint64 integer(const QString &key) const;
    QJsonArray list(const QString &key) const;
    QJsonObject dictionary(const QString &key) const;
    // True for the string "yes" only.
    bool flag(const QString &key) const;

    void setValue(TextKey key, const QString &value) { setValue(key.toString(), value); }
    void setValue(IntegerKey key, qint64 value) { setValue(key.toString(), value); }
    void setValue(ListKey key, const QJsonArray &value) { setValue(key.toString(), value); }
    void setFlag(FlagKey key, bool flag) { setFlag(key.toString(), flag); }
    void setValue(const QString &key, const QJsonValue &value); // undefined removes
    void setFlag(const QString &key, bool flag);
    void remove(const QString &key);
    // Returns whether the file holds every change. A failed write is retried later.
    bool synchronize();
    // Merges what another copy has written immediately.
    void refresh();

    // Problems with the file so far, as texts for the user.
    const QStringList &problems() const { return problems_; }

private:
    QJsonValue valueOfType(const QString &key, QJsonValue::Type type) const;
    void noteChange(const QString &key);
    void noteMerge();
    void noteProblem(const QString &problem);
    void watchFile();
    void merge(const QJsonObject &stored);
    bool isPending() const { return !changedKeys_.isEmpty(); }
    bool save(std::chrono::milliseconds lockWait, bool needsLock = true);
    void write();

    PreferencesFile file_;
    QHash<QString, QJsonValue> values_;
    QHash<QString, QJsonValue> defaults_;
    QSet<QString> changedKeys_; // set or removed since the last write
    QStringList problems_;
    QTimer saveTimer_;
    QTimer mergeTimer_;
    std::unique_ptr<FileWatch> watch_; // null without an application object
    bool writeFailed_ = false;
    std::shared_ptr<void> life_ = std::make_shared<char>(); // expires with the store
};
