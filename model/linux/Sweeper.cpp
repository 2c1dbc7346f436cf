#include "model/linux/Sweeper.h"

#include <atomic>
#include <condition_variable>
#include <deque>
#include <list>
#include <mutex>
#include <thread>

namespace {
using Request = ObjectReader::Request;
using Folder = AttributePolicy::Folder;
using Kind = SweepObject::Kind;
using Clock = std::chrono::steady_clock;

constexpr unsigned mostThreads = 4;

// Where a reader thread is. Written by the thread, read by the watch.
struct Progress
{
    std::mutex mutex;
    Request request;
    QByteArray directory;
    QByteArray name;
    quint64 step = 0;
    bool isInStep = false; // asks the host, and touches nothing but its own
    bool isAbandoned = false;
};

struct Watched
{
    std::shared_ptr<Progress> progress = std::make_shared<Progress>();
    quint64 lastStep = 0;
    Clock::time_point since = Clock::now();
    std::jthread thread;
};

// Nobody waits for the thread any longer.
struct Abandoned
{};
} // namespace

// Shared with the threads, and outlives a run as long as an abandoned thread does.
struct Sweeper::State
{
    std::shared_ptr<const SysfsRoot> root;
    QSet<QByteArray> forcedDevices;
    bool recordsFiles = false;
    bool goesOn = true; // to the objects found below

    std::mutex mutex;
    std::condition_variable workOrEnd; // for the threads
    std::condition_variable finished;  // for the watch
    std::deque<Request> queue;
    std::size_t unfinished = 0; // queued or being read
    bool isOver = false;
    QSet<QByteArray> blockedPaths;
    std::atomic<bool> hasBlockedPaths = false;
    Sweep sweep;

    void add(Request request)
    {
        queue.push_back(std::move(request));
        ++unfinished;
    }
    bool isBlocked(const QByteArray &directory, const QByteArray &name)
    {
        if (!hasBlockedPaths)
            return false;
        const std::lock_guard lock(mutex);
        return blockedPaths.contains(directory + '/' + name);
    }
    void end()
    {
        const std::lock_guard lock(mutex);
        isOver = true;
        finished.notify_one();
        workOrEnd.notify_all();
    }
    class StepWatch;
    void work(Progress &progress);
    bool takeRequest(Progress &progress, Request &request);
    void deliver(ObjectReader::Result result);
    // The number of threads that were abandoned. Locked by the caller.
    int watch(std::list<Watched> &threads, std::chrono::milliseconds patience);
    void giveUp(Progress &progress);
    void startThread(std::list<Watched> &threads, const std::shared_ptr<State> &self);
    void leave(std::list<Watched> &threads);
};

class Sweeper::State::StepWatch final : public ObjectReader::Watch
{
public:
    StepWatch(State &state, Progress &progress)
        : state_(state)
        , progress_(progress)
    {}
    bool mayTake(const QByteArray &directory, const QByteArray &name) override
    {
        if (state_.isBlocked(directory, name))
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

    State &state_;
    Progress &progress_;
};

bool Sweeper::State::takeRequest(Progress &progress, Request &request)
{
    std::unique_lock lock(mutex);
    workOrEnd.wait(lock, [this] { return isOver || !queue.empty(); });
    if (isOver)
        return false;
    // Depth first keeps the queue short and the parents' directories in the kernel's cache.
    request = std::move(queue.back());
    queue.pop_back();
    const std::lock_guard progressLock(progress.mutex);
    progress.request = request;
    return true;
}

void Sweeper::State::deliver(ObjectReader::Result result)
{
    const std::lock_guard lock(mutex);
    if (!goesOn)
        result.below.clear();
    for (Request &request : result.below)
        add(std::move(request));
    sweep.objects.push_back(std::move(result.object));
    std::move(result.filesRead.begin(), result.filesRead.end(),
              std::back_inserter(sweep.filesRead));
    if (--unfinished == 0) {
        isOver = true;
        finished.notify_one();
        workOrEnd.notify_all();
    } else if (!result.below.empty()) {
        workOrEnd.notify_all();
    }
}

void Sweeper::State::work(Progress &progress)
{
    StepWatch watch(*this, progress);
    ObjectReader reader(*root, forcedDevices, watch, recordsFiles);
    Request request;
    try {
        while (takeRequest(progress, request))
            deliver(reader.read(request));
    } catch (const Abandoned &) {
        // Its object is another thread's by now.
    }
}

// The path that does not answer is left out and the object read again without it.
void Sweeper::State::giveUp(Progress &progress)
{
    progress.isAbandoned = true;
    blockedPaths.insert(progress.directory + '/' + progress.name);
    hasBlockedPaths = true;
    queue.push_back(progress.request);
    workOrEnd.notify_all();
}

int Sweeper::State::watch(std::list<Watched> &threads, std::chrono::milliseconds patience)
{
    int abandoned = 0;
    for (Watched &watched : threads) {
        Progress &progress = *watched.progress;
        const std::lock_guard lock(progress.mutex);
        if (progress.isAbandoned)
            continue;
        if (!progress.isInStep || progress.step != watched.lastStep) {
            watched.lastStep = progress.step;
            watched.since = Clock::now();
        } else if (Clock::now() - watched.since >= patience) {
            giveUp(progress);
            ++abandoned;
        }
    }
    return abandoned;
}

void Sweeper::State::startThread(std::list<Watched> &threads, const std::shared_ptr<State> &self)
{
    threads.emplace_back();
    Watched &watched = threads.back();
    watched.thread = std::jthread([self, progress = watched.progress] { self->work(*progress); });
}

// One that hangs in the kernel can be neither joined nor stopped. The others end at once.
void Sweeper::State::leave(std::list<Watched> &threads)
{
    for (Watched &watched : threads) {
        const std::lock_guard lock(watched.progress->mutex);
        watched.progress->isAbandoned = true;
        if (watched.progress->isInStep)
            watched.thread.detach();
    }
    threads.clear();
}

Sweeper::Sweeper(std::shared_ptr<const SysfsRoot> root)
    : Sweeper(std::move(root), Options())
{}

Sweeper::Sweeper(std::shared_ptr<const SysfsRoot> root, Options options)
    : root_(std::move(root))
    , options_(options)
{
    if (options_.threads == 0)
        options_.threads = std::clamp(std::thread::hardware_concurrency(), 2U, mostThreads);
}

Sweep Sweeper::run(const std::stop_token &stop)
{
    Sweep sweep = run(firstRequests(), true, stop);
    // Trees without uevent files show what is a device only by the links that lead there.
    if (!stop.stop_requested() && findForcedDevices(sweep))
        sweep = run(firstRequests(), true, stop);
    return sweep;
}

void Sweeper::learnFrom(const Sweeper &other)
{
    blockedPaths_.unite(other.blockedPaths_);
    forcedDevices_.unite(other.forcedDevices_);
}

Sweeper::ObjectReading Sweeper::readObject(const Request &request)
{
    Request onRequest = request;
    onRequest.readsOnRequest = true;
    ObjectReading reading;
    // One after the other, for in parallel the device would be asked twice at a time.
    for (SweepObject &object : run({request}, false).objects)
        reading.always = std::move(object);
    for (SweepObject &object : run({onRequest}, false).objects)
        reading.onRequest = std::move(object);
    return reading;
}

std::vector<Request> Sweeper::firstRequests() const
{
    std::vector<Request> requests;
    const auto addFolder = [&](const QByteArray &folder, Folder type, Kind kind) {
        const FileDescriptor directory = root_->openDirectory(folder);
        bool any = false;
        for (const SysfsRoot::Entry &entry : SysfsRoot::list(directory.get())) {
            if (entry.type == SysfsRoot::EntryType::Directory) {
                requests.push_back({type, kind, folder + '/' + entry.name, entry.inode});
                any = any || entry.name == "block";
            }
        }
        return any;
    };
    addFolder("firmware/devicetree/base", Folder::Firmware, Kind::FirmwareNode);
    addFolder("module", Folder::Module, Kind::Module);
    addFolder("bus", Folder::Bus, Kind::Bus);
    if (!addFolder("class", Folder::Class, Kind::Class)) {
        // Old and partial trees have the block devices' folder at the top only.
        const FileDescriptor top = root_->openDirectory({});
        for (const SysfsRoot::Entry &entry : SysfsRoot::list(top.get())) {
            if (entry.name == "block" && entry.type == SysfsRoot::EntryType::Directory)
                requests.push_back({Folder::Class, Kind::Class, "block", entry.inode});
        }
    }
    addFolder("devices", Folder::Device, Kind::Device);
    return requests;
}

Sweep Sweeper::run(std::vector<Request> requests, bool goesOn, const std::stop_token &stop)
{
    const auto state = std::make_shared<State>();
    state->root = root_;
    state->forcedDevices = forcedDevices_;
    state->recordsFiles = options_.recordsFiles;
    state->goesOn = goesOn;
    state->blockedPaths = blockedPaths_;
    state->hasBlockedPaths = !blockedPaths_.isEmpty();
    for (Request &request : requests)
        state->add(std::move(request));
    if (state->unfinished == 0)
        return {};

    const std::stop_callback onStop(stop, [&state] { state->end(); });
    std::list<Watched> threads;
    for (unsigned i = 0; i < options_.threads; ++i)
        state->startThread(threads, state);
    std::unique_lock lock(state->mutex);
    while (!state->finished.wait_for(lock, options_.patience / 8, [&] { return state->isOver; })) {
        for (int count = state->watch(threads, options_.patience); count > 0; --count)
            state->startThread(threads, state);
    }
    lock.unlock();
    state->leave(threads);
    blockedPaths_ = state->blockedPaths;
    return std::move(state->sweep);
}

bool Sweeper::findForcedDevices(const Sweep &sweep)
{
    QSet<QByteArray> known;
    for (const SweepObject &object : sweep.objects) {
        if (object.kind == Kind::Device)
            known.insert(object.path);
    }
    bool found = false;
    for (const SweepObject &object : sweep.objects) {
        if (object.kind != Kind::Bus && object.kind != Kind::Class)
            continue;
        for (const SweepObject::Link &link : object.links) {
            const bool isDevice = link.target.startsWith("devices/") &&
                                  (object.kind == Kind::Class ? !link.name.contains('/')
                                                              : link.name.startsWith("devices/"));
            if (!isDevice || known.contains(link.target) || forcedDevices_.contains(link.target) ||
                !root_->openDirectory(link.target))
                continue;
            forcedDevices_.insert(link.target);
            found = true;
        }
    }
    return found;
}
