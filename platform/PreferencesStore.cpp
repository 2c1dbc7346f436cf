#include "platform/PreferencesStore.h"

#include "platform/NotificationCenter.h"
#include "platform/PlatformLogging.h"

#include <QCoreApplication>
#include <QStandardPaths>
#include <map>
#include <memory>

namespace {
struct SharedStores
{
    QString folder = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
                     QStringLiteral("/vandrel");
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
    // Timers and the log do not outlive the application object.
    if (stores.byDomain.empty() && QCoreApplication::instance())
        qAddPostRoutine([] { sharedStores().byDomain.clear(); });
    std::unique_ptr<PreferencesStore> &store = stores.byDomain[domain];
    if (!store)
        store = std::make_unique<PreferencesStore>(domain, stores.folder);
    return *store;
}

void PreferencesStore::setFolder(const QString &folder)
{
    sharedStores().byDomain.clear();
    sharedStores().folder = folder;
}

PreferencesStore::PreferencesStore(const QString &domain, const QString &folder)
    : file_(folder + u'/' + domain + QStringLiteral(".json"))
{
    saveTimer_.setSingleShot(true);
    saveTimer_.callOnTimeout([this] { synchronize(); });
    const PreferencesFile::Contents contents = file_.read();
    values_ = hashed(contents.values);
    writeFailed_ = !file_.isWritable(); // the problem below says so
    if (!contents.problem.isNull())
        noteProblem(contents.problem);
}

PreferencesStore::~PreferencesStore()
{
    synchronize();
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
    noteChange();
}

void PreferencesStore::setFlag(const QString &key, bool flag)
{
    setValue(key, flag ? QStringLiteral("yes") : QStringLiteral("no"));
}

void PreferencesStore::remove(const QString &key)
{
    if (values_.remove(key))
        noteChange();
}

void PreferencesStore::noteChange()
{
    isChanged_ = true;
    if (QCoreApplication::instance() && !saveTimer_.isActive())
        saveTimer_.start(0);
    NotificationCenter::defaultCenter().post(didChangeNotification(), this);
}

bool PreferencesStore::synchronize()
{
    saveTimer_.stop();
    if (!isChanged_)
        return true;
    QJsonObject object;
    QStringList keys = values_.keys();
    keys.sort(); // in order, each key is appended to the object
    for (const QString &key : keys)
        object.insert(key, values_.value(key));
    const QString problem = file_.write(object);
    isChanged_ = !problem.isNull();
    if (isChanged_ && !writeFailed_)
        noteProblem(problem); // once, not at every change
    writeFailed_ = isChanged_;
    return !isChanged_;
}

void PreferencesStore::noteProblem(const QString &problem)
{
    qCWarning(platformLog).noquote() << problem;
    problems_.append(problem);
    NotificationCenter::defaultCenter().post(problemNotification(), this);
}
