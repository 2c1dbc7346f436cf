// SPDX-License-Identifier: Apache-2.0
#include "activity/LogRecorder.h"

#include "activity/EntryPlace.h"
#include "activity/PropertyChanges.h"
#include "activity/RawText.h"
#include "compare/EntryIdentity.h"
#include "compare/VolatileAttributes.h"
#include "model/RegistryEventFeed.h"
#include "store/DataStoreNotifications.h"
#include "store/TavDataStore.h"

#include <QDateTime>

namespace {
using Kind = RegistryEvent::Kind;

constexpr qsizetype maxTextSize = 200;        // characters of a value
constexpr std::size_t maxChanges = 100;       // of a row
constexpr std::size_t maxRowsOfUpdate = 1000; // of changes that no event reported

QString textOf(const RegistryValue &value)
{
    if (value.isNone())
        return {};
    QString text = value.isCollection() ? RawText::linesOf(value).join(QLatin1String(", "))
                                        : RawText::of(value);
    if (text.size() > maxTextSize)
        text = text.left(maxTextSize) + QChar(u'…');
    return text.isNull() ? QStringLiteral("") : text;
}

// Who is in a class or on a bus follows from the events of the members.
bool isLinkToDevice(const PropertyChange &change)
{
    const auto isLink = [](const RegistryValue &value) {
        return value.isNone() || value.toString().startsWith(QLatin1String("devices/"));
    };
    return isLink(change.before) && isLink(change.after);
}

bool isGone(const TavRegistryEntry &entry)
{
    return entry.registryState() == RegistryStateTerminated || entry.hasTerminationDate();
}

QString lastComponent(const QString &path)
{
    return path.mid(path.lastIndexOf(u'/') + 1);
}
} // namespace

LogRecorder::LogRecorder(std::shared_ptr<TavDataStore> store, EventLog &log)
    : store_(std::move(store))
    , log_(log)
{
    RegistryEventFeed *const feed = store_->service() ? store_->service()->eventFeed() : nullptr;
    if (!store_->isLive() || !feed)
        return;
    for (const EntryRef &entry : store_->registryEntries())
        tables_.insert(entry->entryTag(), entry->table());
    connect(feed, &RegistryEventFeed::happened, this, &LogRecorder::record);
    auto &center = NotificationCenter::defaultCenter();
    observations_.push_back(center.observe(DataStoreNotifications::changed, store_.get(),
                                           [this](const auto &) { noteUpdate(); }));
}

void LogRecorder::record(const RegistryEvent &event)
{
    LogRow row{.event = event};
    row.changes = std::exchange(row.event.changes, {});
    noteRename(event);
    TavRegistryEntry *const entry = entryAt(event.kernelPath);
    const bool isOfAnother = entry && event.kind != Kind::Gone && isGone(*entry);
    const bool isStillUnknown = !entry || isOfAnother;
    if (!isStillUnknown)
        describe(row, *entry);
    else
        row.name = lastComponent(event.kernelPath);
    row.driver = event.driver.isEmpty() ? row.driver : event.driver;
    const quint64 number = log_.append(row);
    const bool getsAnother = !event.oldKernelPath.isNull(); // name
    if ((isStillUnknown || getsAnother) && event.kind != Kind::Gone && !event.kernelPath.isNull())
        incomplete_.push_back(number);
    if (isStillUnknown)
        return;
    Reported &reported = reported_[entry->entryTag()];
    reported.lastRow = number;
    for (const LogChange &change : row.changes)
        reported.keys.insert(change.key);
    if (event.kind != Kind::Gone)
        Q_EMIT changeNoted(entry->entryTag(), event.time);
}

// Null: none that was there at the last update.
TavRegistryEntry *LogRecorder::entryAt(const QString &kernelPath) const
{
    return kernelPath.isNull()
               ? nullptr
               : store_->locator().atKernelPath(knownAs_.value(kernelPath, kernelPath));
}

void LogRecorder::noteRename(const RegistryEvent &event)
{
    if (event.oldKernelPath.isNull())
        return;
    const QString first = knownAs_.value(event.oldKernelPath);
    const QString &known = first.isNull() ? event.oldKernelPath : first;
    knownAs_.insert(event.kernelPath, known);
    renamed_.insert(known, event.kernelPath);
}

void LogRecorder::noteUpdate()
{
    completeRows();
    rowsOfUpdate_ = 0;
    QHash<quint64, RegistryValue> before = std::exchange(tables_, {});
    tables_.reserve(before.size());
    for (const EntryRef &entry : store_->registryEntries()) {
        if (isGone(*entry))
            continue;
        const auto known = before.constFind(entry->entryTag());
        if (known != before.constEnd() && !known->isSameCollectionAs(entry->table()))
            noteChanges(*entry, *known);
        tables_.insert(entry->entryTag(), entry->table());
    }
    reported_.clear();
    knownAs_.clear();
    renamed_.clear();
}

// Entries that the update found, and those that came and went before it.
void LogRecorder::completeRows()
{
    for (const quint64 number : std::exchange(incomplete_, {})) {
        if (number < log_.firstNumber())
            continue;
        LogRow row = log_.row(number);
        const QString &path = row.event.kernelPath;
        const QString now = renamed_.value(knownAs_.value(path, path), path);
        TavRegistryEntry *const entry = store_->locator().atKernelPath(now);
        if (!entry || isGone(*entry))
            continue;
        const QString driver = row.driver;
        describe(row, *entry);
        row.driver = driver.isEmpty() ? row.driver : driver;
        const qint64 time = row.event.time;
        log_.replace(number, std::move(row));
        Q_EMIT changeNoted(entry->entryTag(), time);
    }
}

void LogRecorder::noteChanges(TavRegistryEntry &entry, const RegistryValue &before)
{
    const auto reported = reported_.constFind(entry.entryTag());
    const bool isReported = reported != reported_.constEnd();
    const VolatileAttributes &volatileAttributes = VolatileAttributes::standard();
    const QString subsystem = EntryIdentity::subsystemOrClass(entry);
    std::vector<LogChange> changes;
    for (const PropertyChange &change : PropertyChange::between(before, entry.table())) {
        const bool isKnown = isReported ? reported->keys.contains(change.key)
                                        : isLinkToDevice(change) ||
                                              volatileAttributes.contains(subsystem, change.key);
        if (!isKnown && changes.size() < maxChanges)
            changes.push_back({change.key, textOf(change.before), textOf(change.after)});
    }
    if (changes.empty())
        return;
    if (isReported)
        addChanges(reported->lastRow, std::move(changes));
    else
        addRowOfUpdate(entry, std::move(changes));
}

void LogRecorder::addChanges(quint64 number, std::vector<LogChange> changes)
{
    if (number < log_.firstNumber())
        return;
    LogRow row = log_.row(number);
    std::move(changes.begin(), changes.end(), std::back_inserter(row.changes));
    log_.replace(number, std::move(row));
}

void LogRecorder::addRowOfUpdate(TavRegistryEntry &entry, std::vector<LogChange> changes)
{
    if (++rowsOfUpdate_ > maxRowsOfUpdate) {
        log_.countDropped();
        return;
    }
    LogRow row{.event = {.kind = Kind::Changed,
                         .time = QDateTime::currentMSecsSinceEpoch(),
                         .kernelPath = entry.kernelPath()},
               .changes = std::move(changes)};
    describe(row, entry);
    const qint64 time = row.event.time;
    log_.append(std::move(row));
    Q_EMIT changeNoted(entry.entryTag(), time);
}

void LogRecorder::describe(LogRow &row, TavRegistryEntry &entry)
{
    row.entryTag = entry.entryTag();
    const EntryPlace place = EntryPlace::of(entry);
    row.name = place.name;
    row.path = place.path;
    row.inheritance = entry.inheritance();
    row.driver = lastComponent(EntryIdentity::propertyText(entry, u"driver"));
}
