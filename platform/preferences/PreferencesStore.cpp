// SPDX-License-Identifier: Apache-2.0
#include "platform/preferences/PreferencesStore.h"

#include "platform/PlatformLogging.h"
#include "platform/runloop/NotificationCenter.h"
#include "platform/runloop/RunLoop.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QLockFile>
#include <QStandardPaths>
#include <map>
#include <memory>

namespace {
using namespace std::chrono_literals;

constexpr auto lockWaitOnRequest = 100ms;
constexpr auto lockWaitOnExit = 1s; // then the change is written without the lock
constexpr auto retryDelay = 200ms;
constexpr auto staleLockAge = 10s; // a write takes milliseconds

struct SharedStores
{
    QString folder = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
                     QStringLiteral("/vandrel");
    PreferencesStore::Watch watch = PreferencesStore::Watch::File;
    std::map<QString, std::unique_ptr<PreferencesStore>> byDomain;
};

SharedStores &sharedStores()
{
    static SharedStores stores;
    return stores;
}

QHash<QString, QJsonValue> hashed(const QJsonObject &object)
{
    QHash<QString, QJsonValue> hash;
    hash.reserve(object.size());
    for (auto it = object.begin(); it != object.end(); ++it)
        hash.insert(it.key(), it.value());
    return hash;
}
} // namespace

PreferencesStore &PreferencesStore::shared(const QString &domain)
{
    SharedStores &stores = sharedStores();
    // Timers and the log end with the application object.
    if (stores.byDomain.empty() && QCoreApplication::instance())
        qAddPostRoutine([] { sharedStores().byDomain.clear(); });
    std::unique_ptr<PreferencesStore> &store = stores.byDomain[domain];
    if (!store)
        store = std::make_unique<PreferencesStore>(domain, stores.folder, stores.watch);
    return *store;
}

void PreferencesStore::setFolder(const QString &folder)
{
    sharedStores().byDomain.clear();
    sharedStores().folder = folder;
}

void PreferencesStore::watchNoFiles()
{
    sharedStores().watch = Watch::Nothing;
}

PreferencesStore::PreferencesStore(const QString &domain, const QString &folder, Watch watch)
    : file_(folder + u'/' + domain + QStringLiteral(".json"))
{
    saveTimer_.setSingleShot(true);
    saveTimer_.callOnTimeout([this] { save(0ms); });
    mergeTimer_.setSingleShot(true);
    mergeTimer_.callOnTimeout([this] { noteMerge(); });
    const PreferencesFile::Contents contents = file_.read();
    values_ = hashed(contents.values.value_or(QJsonObject()));
    writeFailed_ = !file_.isWritable(); // the problem below says so
    if (watch == Watch::File)
        watchFile();
    if (!contents.problem.isNull())
        noteProblem(contents.problem);
}

PreferencesStore::~PreferencesStore()
{
    if (isPending() && !save(lockWaitOnExit))
        save(0ms, false);
}

void PreferencesStore::watchFile()
{
    if (!QCoreApplication::instance())
        return;
    QDir().mkpath(QFileInfo(file_.path()).path()); // only an existing folder can be watched
    watch_ = std::make_unique<FileWatch>(file_.path());
    // Not while the main thread waits for another one, which may read the values.
    QObject::connect(watch_.get(), &FileWatch::changed, watch_.get(), [this] {
        RunLoop::main().performInDefaultMode(life_, [this] { refresh(); });
    });
}

void PreferencesStore::registerDefaults(const QJsonObject &defaults)
{
    defaults_.insert(hashed(defaults));
}

QJsonValue PreferencesStore::value(const QString &key) const
{
    const auto stored = values_.find(key);
    return stored != values_.end() ? *stored : defaults_.value(key, QJsonValue::Undefined);
}

QJsonValue PreferencesStore::valueOfType(const QString &key, QJsonValue::Type type) const
{
    const auto stored = values_.find(key);
    return stored != values_.end() && stored->type() == type ? *stored : defaults_.value(key);
}

QString PreferencesStore::string(const QString &key) const
{
    return valueOfType(key, QJsonValue::String).toString();
}

QString PreferencesStore::registeredString(const QString &key) const
{
    return defaults_.value(key).toString();
}

qint64 PreferencesStore::integer(const QString &key) const
{
    return values_.value(key).toInteger(defaults_.value(key).toInteger());
}

QJsonArray PreferencesStore::list(const QString &key) const
{
    return valueOfType(key, QJsonValue::Array).toArray();
}

QJsonObject PreferencesStore::dictionary(const QString &key) const
{
    return valueOfType(key, QJsonValue::Object).toObject();
}

bool PreferencesStore::flag(const QString &key) const
{
    return value(key) == QStringLiteral("yes");
}

void PreferencesStore::setValue(const QString &key, const QJsonValue &value)
{
    if (value.isUndefined()) {
        remove(key);
        return;
    }
    const auto stored = values_.find(key);
    if (stored != values_.end() && *stored == value)
        return;
    values_.insert(key, value);
    noteChange(key);
}

void PreferencesStore::setFlag(const QString &key, bool flag)
{
    setValue(key, flag ? QStringLiteral("yes") : QStringLiteral("no"));
}

void PreferencesStore::remove(const QString &key)
{
    if (values_.remove(key))
        noteChange(key);
}

void PreferencesStore::noteChange(const QString &key)
{
    changedKeys_.insert(key);
    if (QCoreApplication::instance() && !saveTimer_.isActive())
        saveTimer_.start(0ms);
    NotificationCenter::defaultCenter().post(didChangeNotification(), this);
}

// Runs from the event loop, so no caller is in the middle of its own change.
void PreferencesStore::noteMerge()
{
    NotificationCenter::defaultCenter().post(didChangeNotification(), this);
    NotificationCenter::defaultCenter().post(didMergeNotification(), this);
}

void PreferencesStore::refresh()
{
    if (!file_.hasChanged())
        return;
    // A deleted file does not reset the values.
    if (const auto stored = file_.peek())
        merge(*stored);
}

// Changes of this copy that are not written yet win.
void PreferencesStore::merge(const QJsonObject &stored)
{
    QHash<QString, QJsonValue> merged = hashed(stored);
    for (const QString &key : std::as_const(changedKeys_)) {
        if (const auto own = values_.constFind(key); own != values_.constEnd())
            merged.insert(key, *own);
        else
            merged.remove(key);
    }
    if (merged == values_)
        return;
    values_ = std::move(merged);
    if (QCoreApplication::instance())
        mergeTimer_.start(0ms);
}

bool PreferencesStore::synchronize()
{
    return save(lockWaitOnRequest);
}

bool PreferencesStore::save(std::chrono::milliseconds lockWait, bool needsLock)
{
    saveTimer_.stop();
    if (!isPending())
        return true;
    QDir().mkpath(QFileInfo(file_.path()).path());
    QLockFile lock(file_.path() + QStringLiteral(".lock"));
    lock.setStaleLockTime(staleLockAge);
    // If no lock can be created, the write reports the reason.
    if (!lock.tryLock(lockWait) && lock.error() == QLockFile::LockFailedError && needsLock) {
        if (QCoreApplication::instance())
            saveTimer_.start(retryDelay);
        return false;
    }
    write();
    return !isPending();
}

void PreferencesStore::write()
{
    QString problem;
    if (file_.hasChanged() || !file_.isWritable()) {
        const PreferencesFile::Contents contents = file_.read();
        if (contents.values)
            merge(*contents.values);
        problem = contents.problem;
    }
    if (!problem.isNull() && file_.isWritable())
        noteProblem(problem); // damaged, and renamed

    QJsonObject object;
    QStringList keys = values_.keys();
    keys.sort(); // in order, each key is appended to the object
    for (const QString &key : keys)
        object.insert(key, values_.value(key));
    problem = file_.write(object);
    if (problem.isNull())
        changedKeys_.clear();
    else if (!writeFailed_)
        noteProblem(problem); // once, not for every change
    writeFailed_ = isPending();
    if (watch_)
        watch_->rewatch();
}

void PreferencesStore::noteProblem(const QString &problem)
{
    qCWarning(platformLog).noquote() << problem;
    problems_.append(problem);
    NotificationCenter::defaultCenter().post(problemNotification(), this);
}
