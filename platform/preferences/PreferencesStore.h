#pragma once

#include "platform/preferences/FileWatch.h"
#include "platform/preferences/PreferencesFile.h"

#include <QHash>
#include <QJsonArray>
#include <QSet>
#include <QStringList>
#include <QTimer>
#include <chrono>

// The user's settings of one domain, kept in a JSON file that running copies of the program share.
// Keys are kept verbatim. Changes reach the file when the event loop is next idle, at synchronize()
// and at the end: only the keys that were set or removed since the last write are written, all
// others are taken over from the file. Main thread only.
class PreferencesStore
{
public:
    // Posted by the default notification center about the store, after each change of a value and
    // each new problem. Values that another copy has written are reported when the event loop is
    // next idle, by both of the first two.
    static QString didChangeNotification() { return QStringLiteral("Preferences changed"); }
    static QString didMergeNotification() { return QStringLiteral("Preferences merged"); }
    static QString problemNotification() { return QStringLiteral("Preferences problem"); }

    static QString applicationIdentifier() { return QStringLiteral("org.vandrel.Vandrel"); }

    // The program's own settings, and those of another domain; opened on first use.
    static PreferencesStore &standard() { return shared(applicationIdentifier()); }
    static PreferencesStore &shared(const QString &domain);
    // Where shared stores are kept. Closes those that are open: no reference to one may be held.
    static void setFolder(const QString &folder);

    PreferencesStore(const QString &domain, const QString &folder);
    ~PreferencesStore();
    PreferencesStore(const PreferencesStore &) = delete;
    PreferencesStore &operator=(const PreferencesStore &) = delete;

    // Registered values apply while a key has no stored one. They are not written.
    void registerDefaults(const QJsonObject &defaults);

    QJsonValue value(const QString &key) const; // undefined if neither stored nor registered
    bool isStored(const QString &key) const { return values_.contains(key); }
    bool isEmpty() const { return values_.isEmpty(); } // registered values apart
    QStringList storedKeys() const { return values_.keys(); }

    // A stored value of another type counts as not stored.
    QString string(const QString &key) const;
    QString registeredString(const QString &key) const; // whatever is stored
    qint64 integer(const QString &key) const;
    QJsonArray list(const QString &key) const;
    QJsonObject dictionary(const QString &key) const;
    // True for the string "yes" only.
    bool flag(const QString &key) const;

    void setValue(const QString &key, const QJsonValue &value); // undefined removes
    void setFlag(const QString &key, bool flag);
    void remove(const QString &key);
    // Whether the file now holds every change. What could not be written is tried again later.
    bool synchronize();
    // Takes over what another copy has written, at once instead of soon.
    void refresh();

    // What went wrong with the file so far, for the user to read.
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
    std::unique_ptr<FileWatch> watch_; // none without an application object
    bool writeFailed_ = false;
};
