#include "model/linux/SweepRun.h"

#include "model/ModelLogging.h"

#include <system_error>

namespace {
using Request = ObjectReader::Request;
using Clock = std::chrono::steady_clock;

// A dead device may have many attributes that never answer, each of which is waited for.
constexpr int mostThreadsLeftBehind = 32;

// Nobody waits for the thread any longer.
struct Abandoned
{};
} // namespace

// Where a reader thread is. Written by the thread, read by the watch.
struct SweepRun::Progress
{
    std::mutex mutex;
    Request request;
    QByteArray directory;
    QByteArray name;
    quint64 step = 0;
    bool isInStep = false; // asks the host, and touches nothing but its own
    bool isAbandoned = false;
    bool isLeftBehind = false; // and counted as such
};

class SweepRun::StepWatch final : public ObjectReader::Watch
{
public:
    StepWatch(SweepRun &run, Progress &progress)
        : run_(run)
        , progress_(progress)
    {}
    bool mayTake(const QByteArray &directory, const QByteArray &name) override
    {
        if (run_.isBlocked(directory, name))
            return false;
        const std::lock_guard lock(progress_.mutex);
        throwIfAbandoned();
        progress_.directory = directory;
        progress_.name = name;
        progress_.isInStep = true;
        ++progress_.step;
        return true;
    }
    void returned() override
    {
        const std::lock_guard lock(progress_.mutex);
        throwIfAbandoned();
        progress_.isInStep = false;
    }

private:
    void throwIfAbandoned() const
    {
        if (progress_.isAbandoned)
            throw Abandoned();
    }

    SweepRun &run_;
    Progress &progress_;
};

SweepRun::SweepRun(Plan plan, std::vector<Request> requests)
    : plan_(std::move(plan))
    , hasBlockedPaths_(!plan_.blockedPaths.isEmpty())
{
    for (Request &request : requests)
        add(std::move(request));
}

SweepRun::~SweepRun() = default;

Sweep SweepRun::perform(const std::stop_token &stop)
{
    if (unfinished_ == 0)
        return {};
    const std::stop_callback onStop(stop, [this] { end(); });
    std::unique_lock lock(mutex_);
    for (unsigned i = 0; i < plan_.threads; ++i)
        startThread();
    endWithoutReaders();
    while (!finished_.wait_for(lock, plan_.patience / 8, [this] { return isOver_; }))
        watch();
    lock.unlock();
    leave();
    return std::move(sweep_);
}

void SweepRun::add(Request request)
{
    queue_.push_back(std::move(request));
    ++unfinished_;
}

bool SweepRun::isBlocked(const QByteArray &directory, const QByteArray &name)
{
    if (!hasBlockedPaths_)
        return false;
    const std::lock_guard lock(mutex_);
    return plan_.blockedPaths.contains(directory + '/' + name);
}

void SweepRun::end()
{
    const std::lock_guard lock(mutex_);
    isOver_ = true;
    finished_.notify_one();
    workOrEnd_.notify_all();
}

void SweepRun::startThread()
{
    threads_.push_back({std::make_shared<Progress>(), 0, Clock::now(), {}});
    Watched &watched = threads_.back();
    try {
        watched.thread = std::jthread(
            [self = shared_from_this(), progress = watched.progress] { self->work(*progress); });
        ++readers_;
    } catch (const std::system_error &) {
        threads_.pop_back(); // the others have to do
    }
}

void SweepRun::work(Progress &progress)
{
    StepWatch watch(*this, progress);
    try {
        ObjectReader reader(*plan_.root, plan_.forcedDevices, watch, plan_.recordsFiles);
        Request request;
        while (takeRequest(progress, request))
            deliver(reader.read(request));
    } catch (const Abandoned &) {
        // Its object is another thread's by now.
    }
    const std::lock_guard lock(progress.mutex);
    if (progress.isLeftBehind)
        --*plan_.threadsLeftBehind;
}

bool SweepRun::takeRequest(Progress &progress, Request &request)
{
    std::unique_lock lock(mutex_);
    workOrEnd_.wait(lock, [this] { return isOver_ || !queue_.empty(); });
    if (isOver_)
        return false;
    // Depth first keeps the queue short and the parents' directories in the kernel's cache.
    request = std::move(queue_.back());
    queue_.pop_back();
    const std::lock_guard progressLock(progress.mutex);
    progress.request = request;
    return true;
}

void SweepRun::deliver(ObjectReader::Result result)
{
    const std::lock_guard lock(mutex_);
    if (!plan_.goesOn)
        result.below.clear();
    for (Request &request : result.below)
        add(std::move(request));
    sweep_.objects.push_back(std::move(result.object));
    std::move(result.filesRead.begin(), result.filesRead.end(),
              std::back_inserter(sweep_.filesRead));
    if (--unfinished_ == 0) {
        isOver_ = true;
        finished_.notify_one();
        workOrEnd_.notify_all();
    } else if (!result.below.empty()) {
        workOrEnd_.notify_all();
    }
}

void SweepRun::watch()
{
    int lost = 0;
    for (Watched &watched : threads_) {
        const std::lock_guard lock(watched.progress->mutex);
        if (!isStuck(watched))
            continue;
        giveUp(*watched.progress);
        ++lost;
    }
    readers_ -= lost;
    for (; lost > 0 && *plan_.threadsLeftBehind < mostThreadsLeftBehind; --lost)
        startThread();
    endWithoutReaders();
}

bool SweepRun::isStuck(Watched &watched) const
{
    const Progress &progress = *watched.progress;
    if (progress.isAbandoned)
        return false;
    if (progress.isInStep && progress.step == watched.lastStep)
        return Clock::now() - watched.since >= plan_.patience;
    watched.lastStep = progress.step;
    watched.since = Clock::now();
    return false;
}

// The path that does not answer is left out and the object read again without it.
void SweepRun::giveUp(Progress &progress)
{
    leaveBehind(progress);
    plan_.blockedPaths.insert(progress.directory + '/' + progress.name);
    hasBlockedPaths_ = true;
    queue_.push_back(progress.request);
    workOrEnd_.notify_all();
}

void SweepRun::leaveBehind(Progress &progress)
{
    progress.isAbandoned = true;
    if (!std::exchange(progress.isLeftBehind, true))
        ++*plan_.threadsLeftBehind;
}

void SweepRun::endWithoutReaders()
{
    if (readers_ > 0)
        return;
    isOver_ = true;
    sweep_.isWhole = false;
    qCWarning(modelLog, "The registry is read in part only: too much of it does not answer");
}

// One that hangs in the kernel can be neither joined nor stopped. The others end at once.
void SweepRun::leave()
{
    for (Watched &watched : threads_) {
        Progress &progress = *watched.progress;
        const std::lock_guard lock(progress.mutex);
        progress.isAbandoned = true;
        if (!progress.isInStep)
            continue;
        leaveBehind(progress);
        watched.thread.detach();
    }
    threads_.clear();
}
