// SPDX-License-Identifier: Apache-2.0
// How a live store follows its registry.
#include "model/RegistryEventFeed.h"
#include "platform/runloop/NotificationCenter.h"
#include "store/DataStoreNotifications.h"
#include "store/TavDataStore.h"

namespace {
constexpr double quietDelay = 0.25; // seconds
constexpr double busyDelay = 1.5;
constexpr double maxPollInterval = 3600.0;

const QString serviceClass = QStringLiteral("DxService");

void forget(OneShotTimer::Ref &timer)
{
    if (timer)
        timer->invalidate();
    timer.reset();
}

bool isPollInterval(double seconds)
{
    return seconds > 0.0 && seconds <= maxPollInterval;
}
} // namespace

void TavDataStore::_registerForDxcoreNotifications()
{
    const auto check = [this](bool success) {
        if (!success)
            _fatalDxRegistryError();
    };
    live_.dxcoreNotificationPort = service_->createNotificationPort();
    check(live_.dxcoreNotificationPort != 0);
    live_.dxcoreNotificationVornPort = service_->messagePort(live_.dxcoreNotificationPort);
    check(live_.dxcoreNotificationVornPort != 0);
    service_->addToRunLoop(live_.dxcoreNotificationVornPort,
                           [this](const auto &message) { handleVornMessage(message); });
    check(registerForPower());
    live_.serviceRoot =
        RegistryHandle::adopt(*service_, service_->entryFromPath(QStringLiteral("DxService:/")));

    check(addMatchingNotification("DxServiceTerminate", live_.serviceTerminationNotification,
                                  [this](auto iterator) { noteTerminated(iterator); }));
    check(addInterestNotification(
        "DxBusyInterest", live_.busyInterestNotification,
        [this](auto, auto, quintptr argument) { _scheduleAutoupdateIsBusy(argument != 0); }));
    check(addInterestNotification("DxGeneralInterest", live_.generalInterestNotification,
                                  [this](auto, auto, auto) { noteChange(); }));
    const auto noteAppeared = [this](RegistryIterator iterator) {
        const std::weak_ptr<void> life = life_;
        noteChange();
        if (!life.expired())
            drain(iterator);
    };
    check(addMatchingNotification("DxServicePublish", live_.servicePublishNotification,
                                  noteAppeared));
    check(
        addMatchingNotification("DxServiceMatched", live_.serviceMatchNotification, noteAppeared));
}

bool TavDataStore::registerForPower()
{
    live_.powerDomainRoot = service_->registerForSystemPower(
        [this](auto type, auto notificationID) { notePowerMessage(type, notificationID); },
        live_.dxcorePowerNotificationPort, live_.powerInterestNotification);
    const NotificationPort port = live_.dxcorePowerNotificationPort;
    if (port != 0)
        service_->addToRunLoop(service_->messagePort(port), [this, port](const auto &message) {
            service_->dispatchMessage(port, message);
        });
    return live_.powerDomainRoot != 0;
}

bool TavDataStore::addMatchingNotification(const char *type, RegistryIterator &iterator,
                                           RegistryService::MatchingCallback callback)
{
    if (service_->addMatchingNotification(live_.dxcoreNotificationPort, type, serviceClass,
                                          std::move(callback), iterator) != RegistryStatus::Success)
        return false;
    drain(iterator); // arms it
    return true;
}

bool TavDataStore::addInterestNotification(const char *type, RegistryNotification &notification,
                                           RegistryService::InterestCallback callback)
{
    return service_->addInterestNotification(live_.dxcoreNotificationPort, live_.serviceRoot.get(),
                                             type, std::move(callback),
                                             notification) == RegistryStatus::Success;
}

void TavDataStore::drain(RegistryIterator iterator)
{
    while (const auto object = RegistryHandle::adopt(*service_, service_->iteratorNext(iterator))) {
        RegistryName name;
        service_->name(object.get(), name);
    }
}

void TavDataStore::endNotifications()
{
    forget(live_.autoupdateTimer);
    forget(live_.autoupdateBusyTimer);
    forget(live_.pollTimer);
    if (live_.held)
        QObject::disconnect(live_.held->counting);
    if (!service_)
        return;
    if (live_.dxcoreNotificationPort) {
        service_->removeFromRunLoop(live_.dxcoreNotificationVornPort);
        service_->destroyNotificationPort(live_.dxcoreNotificationPort);
    }
    if (live_.powerInterestNotification)
        service_->deregisterForSystemPower(live_.powerInterestNotification);
    if (live_.dxcorePowerNotificationPort)
        service_->destroyNotificationPort(live_.dxcorePowerNotificationPort);
    if (live_.powerDomainRoot)
        service_->releasePowerConnection(live_.powerDomainRoot);
    for (const RegistryNotification notification :
         {live_.busyInterestNotification, live_.generalInterestNotification}) {
        if (notification)
            service_->releaseNotification(notification);
    }
    for (const RegistryIterator iterator :
         {live_.servicePublishNotification, live_.serviceMatchNotification,
          live_.serviceTerminationNotification}) {
        if (iterator)
            service_->releaseIterator(iterator);
    }
}

void TavDataStore::handleVornMessage(const RegistryMessage &message)
{
    service_->dispatchMessage(live_.dxcoreNotificationPort, message);
}

void TavDataStore::setPaused(bool paused)
{
    if (!isLive_ || paused == isPaused())
        return;
    const std::weak_ptr<void> life = life_; // an observer may close the document
    if (paused)
        pause();
    else
        resume();
    if (!life.expired())
        post(DataStoreNotifications::eventsHeld);
}

void TavDataStore::pause()
{
    live_.held.emplace();
    live_.held->anyChange = live_.autoupdateTimer || live_.autoupdateBusyTimer;
    forget(live_.autoupdateTimer);
    forget(live_.autoupdateBusyTimer);
    forget(live_.pollTimer);
    if (RegistryEventFeed *const feed = service_->eventFeed())
        live_.held->counting =
            QObject::connect(feed, &RegistryEventFeed::happened, feed, [this](const auto &) {
                ++live_.held->events;
                post(DataStoreNotifications::eventsHeld);
            });
}

void TavDataStore::resume()
{
    const HeldUpdates held = std::move(*live_.held);
    live_.held.reset();
    QObject::disconnect(held.counting);
    const std::weak_ptr<void> life = life_;
    const bool anyGone = noteTerminations(held.terminations);
    if (anyGone)
        post(live_.autoupdate ? DataStoreNotifications::objectsTerminated
                              : DataStoreNotifications::outOfDate);
    if (life.expired())
        return;
    if (held.anyChange && live_.autoupdate)
        updateWhenPrepared([] {});
    else if (held.anyChange)
        noteChange();
    if (!life.expired())
        _resetPollTimer();
}

// Whether any entry is concerned.
bool TavDataStore::noteTerminations(const std::vector<std::pair<quint64, QDateTime>> &terminations)
{
    bool any = false;
    for (const auto &[tag, date] : terminations) {
        if (TavRegistryEntry *const entry = entriesByTag_.value(tag)) {
            entry->noteTerminatedAtDate(date, live_.autoupdate);
            any = true;
        }
    }
    return any;
}

void TavDataStore::holdTerminations(RegistryIterator iterator)
{
    live_.held->anyChange = true;
    while (const auto object = RegistryHandle::adopt(*service_, service_->iteratorNext(iterator))) {
        if (const auto *const entry = registryEntryForDxRegistryEntry(object.get(), false))
            live_.held->terminations.emplace_back(entry->entryTag(),
                                                  QDateTime::currentDateTimeUtc());
    }
}

void TavDataStore::noteChange()
{
    if (isPaused()) {
        live_.held->anyChange = true;
        return;
    }
    if (!live_.autoupdate)
        ++live_.changesSeen;
    _scheduleAutoupdateIsBusy(false);
}

void TavDataStore::noteTerminated(RegistryIterator iterator)
{
    if (isPaused())
        return holdTerminations(iterator);
    const std::weak_ptr<void> life = life_; // an observer may close the document
    const bool isImmediate = live_.autoupdate;
    const QDateTime now = QDateTime::currentDateTimeUtc();
    if (!isImmediate) {
        setUpToDate(false);
        post(DataStoreNotifications::outOfDate);
        if (life.expired())
            return;
    }
    bool any = false;
    while (const auto object = RegistryHandle::adopt(*service_, service_->iteratorNext(iterator))) {
        if (auto *const entry = registryEntryForDxRegistryEntry(object.get(), false)) {
            entry->noteTerminatedAtDate(now, isImmediate);
            any = true;
        }
    }
    if (any && isImmediate)
        post(DataStoreNotifications::objectsTerminated);
}

void TavDataStore::notePowerMessage(quint32 type, quintptr notificationID)
{
    switch (type) {
    case SystemHasPoweredOn:
        _setOnSleepWakePath(false);
        break;
    case SystemWillSleep:
        _setOnSleepWakePath(true);
        service_->allowPowerChange(_powerDomainRoot(), notificationID);
        break;
    case CanSystemSleep:
        service_->allowPowerChange(_powerDomainRoot(), notificationID);
        break;
    default:
        break;
    }
}

void TavDataStore::_setOnSleepWakePath(bool onPath)
{
    live_.onSleepWakePath = onPath;
    if (!onPath)
        _scheduleAutoupdateIsBusy(false);
}

void TavDataStore::setAutoupdate(bool autoupdate)
{
    live_.autoupdate = autoupdate;
    if (!autoupdate) {
        forget(live_.autoupdateTimer);
        forget(live_.autoupdateBusyTimer);
    }
    if (!isUpToDate_)
        _scheduleAutoupdateIsBusy(false);
}

void TavDataStore::_scheduleAutoupdateIsBusy(bool busy)
{
    if (isPaused()) {
        live_.held->anyChange = true;
        return;
    }
    if (!live_.autoupdate) {
        isUpToDate_ = false;
        post(DataStoreNotifications::outOfDate);
        return;
    }
    if (live_.onSleepWakePath || !isLive_)
        return;
    forget(live_.autoupdateBusyTimer);
    OneShotTimer::Ref timer = OneShotTimer::schedule(
        busy ? busyDelay : quietDelay, [this](const auto &fired) { _autoupdate(fired); });
    if (busy) {
        live_.autoupdateBusyTimer = std::move(timer);
    } else {
        forget(live_.autoupdateTimer);
        live_.autoupdateTimer = std::move(timer);
    }
}

void TavDataStore::_autoupdate(const OneShotTimer::Ref &timer)
{
    updateWhenPrepared([this, timer] {
        // A change during the reading has replaced the timer.
        if (live_.autoupdateTimer == timer)
            live_.autoupdateTimer.reset();
        if (live_.autoupdateBusyTimer == timer)
            live_.autoupdateBusyTimer.reset();
    });
}

void TavDataStore::setPolledUpdate(bool polledUpdate)
{
    live_.polledUpdate = polledUpdate;
    _resetPollTimer();
}

void TavDataStore::setPollInterval(double seconds)
{
    if (!isPollInterval(seconds))
        return;
    live_.pollInterval = seconds;
    _resetPollTimer();
}

void TavDataStore::_resetPollTimer()
{
    forget(live_.pollTimer);
    if (isLive_ && !isPaused() && live_.polledUpdate && isPollInterval(live_.pollInterval))
        live_.pollTimer = OneShotTimer::schedule(
            live_.pollInterval, [this](const auto &timer) { _polledUpdate(timer); });
}

void TavDataStore::_polledUpdate(const OneShotTimer::Ref &)
{
    updateWhenPrepared([this] { _resetPollTimer(); });
}

// An update that does not block the window. Does not run on the sleep path, which may begin while
// the service reads; then runs anyway.
void TavDataStore::updateWhenPrepared(std::function<void()> then)
{
    if (live_.onSleepWakePath) {
        then();
        return;
    }
    const auto ready = [this, then = std::move(then), life = std::weak_ptr<void>(life_),
                        began = QDateTime::currentDateTimeUtc(), updatesBefore = directUpdates_,
                        changesBefore = live_.changesSeen] {
        if (life.expired())
            return;
        // A direct update may have run since, with newer data. An update that waited for
        // preparation was requested earlier, so it may have missed the change.
        const bool isLate = directUpdates_ != updatesBefore;
        const bool isPassed = live_.changesSeen != changesBefore;
        if (isPaused()) {
            live_.held->anyChange = true;
        } else if (!isLate && !live_.onSleepWakePath) {
            readRegistry(began);
            if (life.expired())
                return;
            // The reading may have missed changes since it began.
            if (isPassed && isUpToDate_)
                _scheduleAutoupdateIsBusy(false);
        }
        if (!life.expired())
            then();
    };
    service_->prepareAsync(ready);
}
