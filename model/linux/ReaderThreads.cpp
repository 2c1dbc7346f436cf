// SPDX-License-Identifier: Apache-2.0
#include "model/linux/ReaderThreads.h"

#include "model/ModelLogging.h"

#include <csignal>
#include <pthread.h>
#include <system_error>

namespace {
using Request = ObjectReader::Request;

constexpr int longSteps = 20;  // a step is long from this part of the patience
constexpr int maxThreads = 32; // including those left behind by other readings

// Thrown in a thread that is not waited for any longer.
struct Abandoned
{};

// Interrupts a system call; otherwise ignored. Global, since signal handlers are.
int interruptSignal()
{
    static const int number = [] {
        const int chosen = SIGRTMIN + 6;
        struct sigaction action = {};
        action.sa_handler = [](int) {};
        sigaction(chosen, &action, nullptr);
        return chosen;
    }();
    return number;
}

class NoWatch final : public ObjectReader::Watch
{
public:
    bool mayTake(const SysfsPath &, const QByteArray &) override { return true; }
    bool returned() override { return true; }
    bool isGivenUp() const override { return false; }
};
} // namespace

// The state of a reader thread. Written by the thread, read by the watching caller.
struct ReaderThreads::Progress
{
    std::mutex mutex;
    Request request;
    SysfsPath directory;
    QByteArray name;
    quint64 step = 0;
    bool isInStep = false; // in a call to the host, touching only its own data
    bool isLong = false;   // another thread has been started beside it
    std::atomic<bool> isGivenUp = false;
    bool isAbandoned = false;
    bool isLeftBehind = false; // and counted as such

    // Ends with a slash for the directory itself: listing it may hang where its name does not.
    SysfsPath stepPath() const { return directory.child(name); }
    SlowStep::Step longStep() const { return {request.path, stepPath()}; }
};

class ReaderThreads::StepWatch final : public ObjectReader::Watch
{
public:
    StepWatch(ReaderThreads &owner, Progress &progress)
        : owner_(owner)
        , progress_(progress)
    {}
    bool mayTake(const SysfsPath &directory, const QByteArray &name) override
    {
        if (owner_.isBlocked(directory, name))
            return false;
        const std::lock_guard lock(progress_.mutex);
        throwIfAbandoned();
        progress_.directory = directory;
        progress_.name = name;
        progress_.isInStep = true;
        ++progress_.step;
        return true;
    }
    bool returned() override
    {
        const std::lock_guard lock(progress_.mutex);
        throwIfAbandoned();
        progress_.isInStep = false;
        if (std::exchange(progress_.isLong, false))
            ++owner_.active_;
        return !progress_.isGivenUp.exchange(false);
    }
    bool isGivenUp() const override { return progress_.isGivenUp; }

private:
    void throwIfAbandoned() const
    {
        if (progress_.isAbandoned)
            throw Abandoned();
    }

    ReaderThreads &owner_;
    Progress &progress_;
};

ReaderThreads::ReaderThreads(Plan plan, std::vector<Request> requests)
    : plan_(std::move(plan))
    , hasBlockedPaths_(!plan_.blockedPaths.isEmpty())
{
    for (Request &request : requests)
        add(std::move(request));
}

ReaderThreads::~ReaderThreads() = default;

TreeContents ReaderThreads::perform(const std::stop_token &stop)
{
    if (unfinished_ == 0)
        return {};
    const std::stop_callback onStop(stop, [this] { end(); });
    std::unique_lock lock(mutex_);
    // At least one thread: what is known to hang is not tried.
    for (unsigned i = 0; i < plan_.threads && (i == 0 || threadsToSpare() > 0); ++i)
        startThread();
    const auto pause = plan_.patience / longSteps / 2;
    do
        watch(lock);
    while (!finished_.wait_for(lock, pause, [this] { return isOver_; }));
    lock.unlock();
    leave();
    return std::move(contents_);
}

void ReaderThreads::add(Request request)
{
    queue_.push_back(std::move(request));
    ++unfinished_;
}

bool ReaderThreads::isBlocked(const SysfsPath &directory, const QByteArray &name)
{
    if (!hasBlockedPaths_)
        return false;
    const std::lock_guard lock(mutex_);
    return plan_.blockedPaths.contains(directory.child(name));
}

void ReaderThreads::end()
{
    const std::lock_guard lock(mutex_);
    isOver_ = true;
    finished_.notify_one();
    workOrEnd_.notify_all();
}

void ReaderThreads::startThread()
{
    threads_.push_back({std::make_shared<Progress>(), 0, Clock::now(), {}, {}});
    Watched &watched = threads_.back();
    try {
        ++active_;
        watched.thread = std::jthread(
            [self = shared_from_this(), progress = watched.progress] { self->work(*progress); });
    } catch (const std::system_error &) {
        --active_;
        threads_.pop_back(); // continue with fewer threads
    }
}

void ReaderThreads::work(Progress &progress)
{
    StepWatch watch(*this, progress);
    try {
        ObjectReader reader(*plan_.root, plan_.forcedDevices, watch, plan_.recordsFiles,
                            plan_.detail);
        Request request;
        while (takeRequest(progress, request))
            deliver(reader.read(request));
        --active_;
    } catch (const Abandoned &) {
        // Another thread reads its object.
    }
    const std::lock_guard lock(progress.mutex);
    if (progress.isLeftBehind)
        --*plan_.threadsLeftBehind;
}

bool ReaderThreads::takeRequest(Progress &progress, Request &request)
{
    std::unique_lock lock(mutex_);
    // Threads returning from long steps can exceed the limit.
    const auto isTooMany = [this] { return active_ > static_cast<int>(plan_.threads); };
    workOrEnd_.wait(lock, [&] { return isOver_ || isTooMany() || !queue_.empty(); });
    if (isOver_ || isTooMany())
        return false;
    // Depth first keeps the queue short and the parents' directories in the kernel's cache.
    request = std::move(queue_.back());
    queue_.pop_back();
    const std::lock_guard progressLock(progress.mutex);
    progress.request = request;
    return true;
}

void ReaderThreads::deliver(ObjectReader::Result result)
{
    const std::lock_guard lock(mutex_);
    if (!plan_.isRecursive)
        result.below.clear();
    for (Request &request : result.below)
        add(std::move(request));
    contents_.objects.push_back(std::move(result.object));
    std::move(result.filesRead.begin(), result.filesRead.end(),
              std::back_inserter(contents_.filesRead));
    if (--unfinished_ == 0) {
        isOver_ = true;
        finished_.notify_one();
        workOrEnd_.notify_all();
    } else if (!result.below.empty()) {
        workOrEnd_.notify_all();
    }
}

void ReaderThreads::watch(std::unique_lock<std::mutex> &lock)
{
    waiting_ = 0;
    for (Watched &watched : threads_) {
        const std::lock_guard progressLock(watched.progress->mutex);
        watch(watched);
    }
    nameLongestStep();
    startMissingThreads();
    const bool isAnyReading = active_ > 0 || waiting_ > 0;
    if (!isAnyReading && !queue_.empty())
        readRestWithoutAttributes(lock);
}

void ReaderThreads::watch(Watched &watched)
{
    Progress &progress = *watched.progress;
    if (progress.isAbandoned)
        return;
    const Clock::time_point now = Clock::now();
    if (!progress.isInStep || progress.step != watched.lastStep) {
        watched.lastStep = progress.step;
        watched.since = now;
        return;
    }
    const auto waited = now - watched.since;
    if (!progress.isLong && waited >= plan_.patience / longSteps) {
        progress.isLong = true;
        --active_;
    }
    if (!progress.isGivenUp && (waited >= patience() || isSkipped(progress))) {
        watched.givenUp = now;
        giveUp(progress);
    }
    const auto grace = plan_.patience / 4;
    // Repeated: a signal between two system calls has no effect.
    if (progress.isGivenUp && plan_.interrupts)
        pthread_kill(watched.thread.native_handle(), interruptSignal());
    if (progress.isGivenUp && (!plan_.interrupts || now - watched.givenUp >= grace)) {
        leaveBehind(progress);
        queue_.push_front(progress.request);
        workOrEnd_.notify_all();
    }
    waiting_ += progress.isLong && !progress.isAbandoned;
}

void ReaderThreads::nameLongestStep()
{
    if (!plan_.slowStep)
        return;
    SlowStep::Step longest;
    Clock::time_point since = Clock::time_point::max();
    for (const Watched &watched : threads_) {
        const Progress &progress = *watched.progress;
        const std::lock_guard lock(watched.progress->mutex);
        if (!progress.isLong || progress.isGivenUp || progress.isAbandoned ||
            watched.since >= since)
            continue;
        since = watched.since;
        longest = progress.longStep();
    }
    plan_.slowStep->setWaitedFor(std::move(longest));
}

bool ReaderThreads::isSkipped(const Progress &progress) const
{
    return plan_.slowStep && progress.isLong && plan_.slowStep->takeSkip(progress.longStep());
}

// Shorter when many steps hang, so that waits do not add up.
std::chrono::microseconds ReaderThreads::patience() const
{
    constexpr int maxHalvings = 5;
    const int halvings = std::min(stepsGivenUp_ / maxThreads, maxHalvings);
    return plan_.patience / (1 << halvings);
}

void ReaderThreads::giveUp(Progress &progress)
{
    progress.isGivenUp = true;
    ++stepsGivenUp_;
    plan_.blockedPaths.insert(progress.stepPath());
    hasBlockedPaths_ = true;
}

// The object is read again without what did not answer.
void ReaderThreads::leaveBehind(Progress &progress)
{
    progress.isAbandoned = true;
    if (!std::exchange(progress.isLeftBehind, true))
        ++*plan_.threadsLeftBehind;
}

int ReaderThreads::threadsToSpare() const
{
    return maxThreads - active_ - waiting_ - *plan_.threadsLeftBehind;
}

void ReaderThreads::startMissingThreads()
{
    const int missing = static_cast<int>(plan_.threads) - active_;
    for (int i = std::min(missing, threadsToSpare()); i > 0; --i)
        startThread();
}

// In this thread, because no other may be started; names and links always answer.
void ReaderThreads::readRestWithoutAttributes(std::unique_lock<std::mutex> &lock)
{
    qCWarning(modelLog, "Too many devices do not answer: the rest is read without attributes");
    NoWatch watch;
    ObjectReader reader(*plan_.root, plan_.forcedDevices, watch, plan_.recordsFiles, plan_.detail);
    while (!isOver_ && !queue_.empty()) {
        Request request = std::move(queue_.back());
        queue_.pop_back();
        request.readsAttributes = false;
        lock.unlock();
        ObjectReader::Result result = reader.read(request);
        deliver(std::move(result));
        lock.lock();
    }
}

// A thread that hangs in the kernel can be neither joined nor stopped. The others end immediately.
void ReaderThreads::leave()
{
    for (Watched &watched : threads_) {
        Progress &progress = *watched.progress;
        const std::lock_guard lock(progress.mutex);
        progress.isAbandoned = true;
        if (!progress.isInStep)
            continue;
        leaveBehind(progress);
        if (plan_.interrupts)
            pthread_kill(watched.thread.native_handle(), interruptSignal());
        watched.thread.detach();
    }
    threads_.clear();
}
