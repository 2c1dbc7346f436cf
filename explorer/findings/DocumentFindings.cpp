// SPDX-License-Identifier: Apache-2.0
#include "explorer/findings/DocumentFindings.h"

#include "store/DataStoreNotifications.h"
#include "store/TavDataStore.h"
#include "store/TavDocument.h"

#include <QtConcurrentRun>

namespace {
constexpr int delay = 200; // milliseconds, so that a window is painted first
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
    connect(&soon_, &QTimer::timeout, this, &DocumentFindings::check);
    connect(&watcher_, &QFutureWatcherBase::finished, this, &DocumentFindings::take);
    for (const QString &name :
         {DataStoreNotifications::changed, DataStoreNotifications::objectsTerminated})
        observations_.push_back(NotificationCenter::defaultCenter().observe(
            name, store_.get(), [this](const auto &) { soon_.start(); }));
    soon_.start();
}

DocumentFindings::~DocumentFindings()
{
    watcher_.waitForFinished();
}

void DocumentFindings::check()
{
    isOutdated_ = watcher_.isRunning();
    if (isOutdated_)
        return;
    const auto registry = std::make_shared<const CheckedRegistry>(*store_);
    watcher_.setFuture(QtConcurrent::run([registry] { return CheckRun().over(*registry); }));
}

void DocumentFindings::take()
{
    result_ = watcher_.result();
    Q_EMIT changed();
    if (isOutdated_)
        check();
}
