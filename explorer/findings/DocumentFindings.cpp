// SPDX-License-Identifier: Apache-2.0
#include "explorer/findings/DocumentFindings.h"

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
    entries_ = store_->registryEntries();
    added_ = 0;
    registry_ = std::make_shared<CheckedRegistry>();
    registry_->reserve(entries_.size());
    addSome();
}

void DocumentFindings::addSome()
{
    constexpr std::size_t step = 100; // entries, between looks at the clock
    QElapsedTimer time;
    time.start();
    while (added_ < entries_.size() && time.elapsed() < slice) {
        const std::size_t end = std::min(added_ + step, entries_.size());
        for (; added_ < end; ++added_)
            registry_->add(*entries_[added_]);
    }
    if (added_ < entries_.size())
        return nextSlice_.start();
    entries_.clear();
    watcher_.setFuture(QtConcurrent::run([registry = std::move(registry_)] {
        registry->finish();
        return CheckRun().over(*registry);
    }));
}

void DocumentFindings::take()
{
    result_ = watcher_.result();
    Q_EMIT changed();
    if (isOutdated_)
        begin();
}
