// SPDX-License-Identifier: Apache-2.0
#include "explorer/findings/DocumentFindings.h"

#include "activity/EntryPlace.h"
#include "checks/CheckList.h"
#include "store/DataStoreNotifications.h"
#include "store/TavDataStore.h"
#include "store/TavDocument.h"

#include <QElapsedTimer>
#include <QtConcurrentRun>

namespace {
constexpr int delay = 200;  // milliseconds, so that a window is painted first
constexpr qint64 slice = 3; // milliseconds
} // namespace

DocumentFindings &DocumentFindings::of(TavDocument &document)
{
    auto *const known =
        document.findChild<DocumentFindings *>(QString(), Qt::FindDirectChildrenOnly);
    return known ? *known : *new DocumentFindings(document);
}

DocumentFindings::DocumentFindings(TavDocument &document)
    : QObject(&document)
    , store_(document.dataStore())
{
    soon_.setSingleShot(true);
    soon_.setInterval(delay);
    connect(&soon_, &QTimer::timeout, this, &DocumentFindings::begin);
    nextSlice_.setSingleShot(true);
    nextSlice_.setInterval(0);
    connect(&nextSlice_, &QTimer::timeout, this, &DocumentFindings::addSome);
    connect(&watcher_, &QFutureWatcherBase::finished, this, &DocumentFindings::take);
    connect(&hidden_, &HiddenFindings::changed, this, [this] {
        below_.clear();
        mark();
        Q_EMIT changed();
    });
    observations_.push_back(NotificationCenter::defaultCenter().observe(
        DataStoreNotifications::objectChanged, nullptr, [this](const auto &) { soon_.start(); }));
    for (const QString &name :
         {DataStoreNotifications::changed, DataStoreNotifications::objectsTerminated})
        observations_.push_back(
            NotificationCenter::defaultCenter().observe(name, store_.get(), [this](const auto &) {
                nextSlice_.stop(); // the rest would be of another moment
                soon_.start();
            }));
    soon_.start();
}

DocumentFindings::~DocumentFindings()
{
    watcher_.waitForFinished();
}

void DocumentFindings::begin()
{
    isOutdated_ = watcher_.isRunning();
    if (isOutdated_)
        return;
    added_ = 0;
    entryCount_ = store_->registryEntries().size();
    registry_ = std::make_shared<CheckedRegistry>();
    registry_->reserve(entryCount_);
    registry_->setMachine(*store_);
    addSome();
}

void DocumentFindings::addSome()
{
    constexpr std::size_t step = 100; // entries, between looks at the clock
    const auto &entries = store_->registryEntries();
    if (entries.size() != entryCount_)
        return soon_.start(); // the rest would be of another moment
    QElapsedTimer time;
    time.start();
    while (added_ < entryCount_ && time.elapsed() < slice) {
        const std::size_t end = std::min(added_ + step, entryCount_);
        for (; added_ < end; ++added_)
            registry_->add(*entries[added_], measured_.value(entries[added_]->entryTag()));
    }
    if (added_ < entryCount_)
        return nextSlice_.start();
    const std::shared_ptr<CheckedRegistry> registry = std::move(registry_);
    const auto check = [registry, before = std::move(checked_), result = result_] {
        registry->finish(before.get());
        return before ? CheckRun().over(*registry, result) : CheckRun().over(*registry);
    };
    if (store_->isLive()) // a snapshot stays as it is
        checked_ = registry;
    watcher_.setFuture(QtConcurrent::run(check));
}

void DocumentFindings::take()
{
    CheckRun::Result result = watcher_.result();
    const bool differs = result.findings != result_.findings;
    result_ = std::move(result);
    below_.clear(); // entries may have moved
    mark();
    if (differs)
        Q_EMIT changed();
    Q_EMIT checked();
    if (isOutdated_)
        begin();
}

bool DocumentFindings::canMeasure() const
{
    return store_->isLive() && store_->service() && !measurement_;
}

void DocumentFindings::measure()
{
    if (!canMeasure())
        return;
    measurement_ = std::make_unique<Measurement>(*store_->service(), store_->registryEntries());
    connect(measurement_.get(), &Measurement::finished, this, &DocumentFindings::takeMeasured,
            Qt::QueuedConnection); // which ends it
    measurement_->start();
    Q_EMIT checked();
}

void DocumentFindings::takeMeasured()
{
    measured_ = measurement_->tables();
    dateMeasured_ = QDateTime::currentDateTime();
    measurement_.reset();
    nextSlice_.stop();
    begin();
}

HiddenFindings::Place DocumentFindings::placeOf(const Finding &finding) const
{
    TavRegistryEntry *const entry = store_->entryWithTag(finding.entryTag);
    QString path = entry ? entry->kernelPath() : QString();
    if (entry && path.isEmpty())
        path = EntryPlace::of(*entry).path;
    return {finding.check, store_->hostName(), path};
}

bool DocumentFindings::isHidden(const Finding &finding) const
{
    return !hidden_.isEmpty() && hidden_.hides(placeOf(finding));
}

std::size_t DocumentFindings::count(Severity severity) const
{
    const auto counts = [&](const Finding &finding) {
        return finding.severity == severity && !isHidden(finding);
    };
    return static_cast<std::size_t>(
        std::count_if(result_.findings.begin(), result_.findings.end(), counts));
}

QStringList DocumentFindings::titlesAt(const TavRegistryEntry &entry) const
{
    QStringList titles;
    if (!entry.worstFinding())
        return titles;
    for (const Finding &finding : result_.findings) {
        if (finding.entryTag == entry.entryTag() && !isHidden(finding))
            titles.append(CheckList::describe(finding.check).title);
    }
    titles.removeDuplicates();
    return titles;
}

void DocumentFindings::mark()
{
    for (const EntryRef &entry : marked_)
        entry->clearFindings();
    marked_.clear();
    for (const Finding &finding : result_.findings) {
        TavRegistryEntry *const entry = store_->entryWithTag(finding.entryTag);
        if (!entry || isHidden(finding))
            continue;
        entry->addFinding(finding.severity);
        marked_.push_back(entry->shared_from_this());
    }
}

std::optional<Severity> DocumentFindings::worstBelow(const TavRegistryEntry &entry,
                                                     const QString &plane) const
{
    if (marked_.empty())
        return std::nullopt;
    auto found = below_.constFind(plane);
    if (found == below_.constEnd())
        found = below_.insert(plane, worstInPlane(plane));
    const auto worst = found->constFind(entry.entryTag());
    return worst == found->constEnd() ? std::nullopt : std::optional(*worst);
}

// Climbs from the worst first, and ends at what has been reached: no link is taken twice.
DocumentFindings::SeverityByTag DocumentFindings::worstInPlane(const QString &plane) const
{
    SeverityByTag worst;
    for (const Severity severity : {Severity::Error, Severity::Warning, Severity::Note}) {
        std::vector<const TavRegistryEntry *> toClimb;
        for (const EntryRef &entry : marked_) {
            if (entry->worstFinding() == severity)
                toClimb.push_back(entry.get());
        }
        while (!toClimb.empty()) {
            const TavRegistryEntry *const entry = toClimb.back();
            toClimb.pop_back();
            for (const TavRegistryEntry *const parent : entry->parentsInPlane(plane)) {
                if (worst.contains(parent->entryTag()))
                    continue;
                worst.insert(parent->entryTag(), severity);
                toClimb.push_back(parent);
            }
        }
    }
    return worst;
}
