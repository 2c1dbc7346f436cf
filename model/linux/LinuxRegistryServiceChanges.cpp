// SPDX-License-Identifier: Apache-2.0
// Rereading and reporting changes.
#include "model/linux/LinuxRegistryService.h"
#include "model/linux/ReadingWait.h"
#include "platform/runloop/Disposal.h"
#include "platform/runloop/RunLoop.h"

bool LinuxRegistryService::prepare()
{
    // A running preparation may have read objects before they changed.
    cancelPreparation();
    std::move(readyLater_.begin(), readyLater_.end(), std::back_inserter(ready_));
    readyLater_.clear();
    ReadingWait wait;
    beginPreparation(wait.slowStep());
    RunLoop::main().wait(wait, [&](auto timeout) {
        return !preparation_ || wait.isCancelled() || preparation_->waitFor(timeout);
    });
    if (!preparation_)
        return true; // code that ran during the wait has already installed another preparation
    if (wait.isCancelled()) {
        cancelPreparation();
        if (!ready_.empty())
            beginPreparation(); // for the waiting prepareAsync calls
        return false;
    }
    const auto ready = installPreparation();
    // Deferred: the caller is about to read.
    for (const auto &call : ready)
        RunLoop::performLater(mainThread_, call);
    return true;
}

void LinuxRegistryService::prepareAsync(std::function<void()> ready)
{
    if (preparation_) {
        readyLater_.push_back(std::move(ready));
        return;
    }
    ready_.push_back(std::move(ready));
    beginPreparation();
}

void LinuxRegistryService::beginPreparation(std::shared_ptr<SlowStep> slowStep)
{
    notifier_.readingBegins();
    // An object that returned is another one than the one read on request.
    requested_.keepOnly([this](quint64 node) { return !notifier_.isGoneNode(node); });
    readDuringPreparation_.clear();
    const quint64 number = ++preparationNumber_;
    const auto finished = [this, number] {
        QMetaObject::invokeMethod(
            &mainThread_, [this, number] { preparationFinished(number); }, Qt::QueuedConnection);
    };
    TreeReader treeReader = treeReader_;
    treeReader.setSlowStep(std::move(slowStep));
    preparation_ =
        std::make_unique<GraphTask>(GraphTask::Input{root_, std::move(treeReader), classNames_,
                                                     requested_, memory_, treeReadings_ + 1},
                                    finished);
}

// Learns what did not answer: it is not tried again.
void LinuxRegistryService::cancelPreparation()
{
    if (!preparation_)
        return;
    treeReader_.learnFrom(preparation_->cancel());
    preparation_.reset();
}

bool LinuxRegistryService::retryWhatDidNotAnswer()
{
    cancelPreparation();
    const TreeReader before = treeReader_;
    treeReader_.forgetWhatDidNotAnswer();
    requested_.forgetUnanswered();
    samplingReader_.reset();
    if (prepare())
        return true;
    treeReader_.learnFrom(before); // updates in the background do not retry
    return false;
}

void LinuxRegistryService::preparationFinished(quint64 number)
{
    RunLoop::main().performInDefaultMode(alive_, [this, number] {
        if (!preparation_ || number != preparationNumber_)
            return;
        const auto ready = installPreparation();
        for (const auto &call : ready)
            call();
    });
}

// Returns the callbacks waiting for what is now installed.
std::vector<std::function<void()>> LinuxRegistryService::installPreparation()
{
    GraphTask::Result result = preparation_->take();
    preparation_.reset();
    treeReader_.learnFrom(result.treeReader);
    installGraph(std::move(result));
    auto ready = std::exchange(ready_, std::exchange(readyLater_, {}));
    if (!ready_.empty())
        beginPreparation();
    ports().deliver();
    return ready;
}

void LinuxRegistryService::installGraph(GraphTask::Result result)
{
    classNames_ = std::move(result.classNames);
    filesRead_ = std::move(result.filesRead);
    const quint32 busyCountBefore = graph() ? graph()->at(ObjectTable::host).busyCount()
                                            : result.graph->at(ObjectTable::host).busyCount();
    // Before objects get other IDs than their nodes.
    requested_.keepOnly(
        [&](quint64 node) { return result.graph->withID(node) != HostObject::none; });
    for (const quint64 node : std::exchange(readDuringPreparation_, {})) {
        if (const int index = result.graph->withID(node); index != HostObject::none)
            result.graph->addRequested(index, requested_);
    }
    if (notifier_.graphRead(*result.graph))
        result.graph->noteAllChanged(result.memory);
    std::swap(memory_, result.memory);
    std::vector<RegistryObject> vanished;
    result.graph = objects_.setGraph(std::move(result.graph), vanished);
    ++treeReadings_;
    notifier_.graphChanged(vanished, busyCountBefore);
    const bool isBusy = graph()->at(ObjectTable::host).busyCount() > 0;
    if (isBusy != (busyCountBefore > 0))
        passOn({.kind = isBusy ? RegistryEvent::Kind::Busy : RegistryEvent::Kind::Idle});
    // The previous graph is about as large.
    if (memory_.size() >= qsizetype(Disposal::worthwhile))
        Disposal::later(std::make_shared<GraphTask::Result>(std::move(result)));
}

bool LinuxRegistryService::openEvents()
{
    if (events_ || !openEvents_)
        return true;
    events_ = openEvents_();
    if (!events_)
        return false;
    eventsReady_ =
        std::make_unique<RunLoopSource>(events_->descriptor(), [this] { receiveEvents(); });
    return true;
}

NotificationPort LinuxRegistryService::createNotificationPort()
{
    if (!openEvents())
        return 0;
    const NotificationPort port = NotifyingRegistryService::createNotificationPort();
    eventPorts_.insert(port);
    return port;
}

void LinuxRegistryService::destroyNotificationPort(NotificationPort port)
{
    NotifyingRegistryService::destroyNotificationPort(port);
    if (!eventPorts_.remove(port) || !eventPorts_.isEmpty())
        return;
    eventsReady_.reset();
    events_.reset();
    afterLoss_.reset();
}

void LinuxRegistryService::receiveEvents()
{
    constexpr int maxEvents = 256; // keeps the window responsive in a storm
    DeviceEvent event;
    bool isLoss = false;
    for (int i = 0; i < maxEvents; ++i) {
        const auto reception = events_->receive(event);
        if (reception == DeviceEventSource::Reception::Nothing)
            break;
        if (reception == DeviceEventSource::Reception::Event) {
            passOn(event);
            notifier_.handle(event);
        } else {
            isLoss = isLossPending_ = true;
        }
    }
    // Losses come in bursts; check once after a while.
    constexpr double soon = 0.1;
    if (isLoss && !afterLoss_)
        afterLoss_ = OneShotTimer::schedule(soon, [this](const auto &) { checkEverything(); });
    ports().deliver(); // may close the event source
}

void LinuxRegistryService::passOn(const DeviceEvent &event)
{
    if (event.sequence != 0)
        passOnLoss(event.sequence);
    passOn({.kind = event.kind(),
            .sequence = event.sequence,
            .kernelPath = event.path.kernelPath(),
            .oldKernelPath = event.oldPath.kernelPath(),
            .subsystem = QString::fromUtf8(event.subsystem),
            .driver = QString::fromUtf8(event.driver),
            .changes = event.changes});
}

void LinuxRegistryService::passOn(RegistryEvent event)
{
    event.time = QDateTime::currentMSecsSinceEpoch();
    Q_EMIT eventFeed()->happened(event);
}

// The kernel numbers its events, also those that others may receive and this program may not.
void LinuxRegistryService::passOnLoss(quint64 nextSequence)
{
    const quint64 last = std::exchange(lastSequence_, std::max(lastSequence_, nextSequence));
    if (!std::exchange(isLossPending_, false))
        return;
    const bool isKnown = last != 0 && nextSequence > last;
    passOn({.kind = RegistryEvent::Kind::Lost, .lost = isKnown ? nextSequence - last - 1 : 0});
}

void LinuxRegistryService::checkEverything()
{
    afterLoss_.reset();
    passOnLoss(0);
    prepareAsync([this] {
        notifier_.reportChange();
        ports().deliver();
    });
}

PowerConnection LinuxRegistryService::registerForSystemPower(PowerCallback callback,
                                                             NotificationPort &port,
                                                             RegistryNotification &notification)
{
    port = ports().create();
    const RegistryNotification number = ports().addPower(port, std::move(callback));
    notification = number;
    if (!openSleepMessages_)
        return number;
    auto messages = openSleepMessages_();
    const auto pass = [this, number](PowerMessage type, quint64 request) {
        // Each registration gets every message.
        if (number == power_.begin()->first)
            passOn({.kind = type == SystemWillSleep ? RegistryEvent::Kind::Sleep
                                                    : RegistryEvent::Kind::Wake});
        ports().reportPower(number, type, request);
        ports().deliver();
    };
    QObject::connect(messages.get(), &SleepMessages::willSleep, &mainThread_,
                     [pass](quint64 request) { pass(SystemWillSleep, request); });
    QObject::connect(messages.get(), &SleepMessages::hasPoweredOn, &mainThread_,
                     [pass] { pass(SystemHasPoweredOn, 0); });
    power_[number] = std::move(messages);
    return number;
}

void LinuxRegistryService::deregisterForSystemPower(RegistryNotification notification)
{
    ports().releaseNotification(notification);
}

void LinuxRegistryService::allowPowerChange(PowerConnection connection, quintptr notificationID)
{
    if (const auto found = power_.find(connection); found != power_.end())
        found->second->allowSleep(notificationID);
}

void LinuxRegistryService::releasePowerConnection(PowerConnection connection)
{
    power_.erase(connection);
}
