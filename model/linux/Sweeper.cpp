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
    std::optional<Request> request; // none while it waits for one
    QByteArray directory;
    QByteArray name;
    quint64 step = 0;
    bool isAbandoned = false;
};

struct Watched
{
    std::shared_ptr<Progress> progress = std::make_shared<Progress>();
    quint64 lastStep = 0;
    Clock::time_point since = Clock::now();
};
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
    void work(Progress &progress);
    bool takeRequest(Progress &progress, Request &request);
    void deliver(Progress &progress, ObjectReader::Result result);
    // The number of threads that were abandoned.
    int watch(std::list<Watched> &threads, std::chrono::milliseconds patience);
    void giveUp(Progress &progress);
    void startThread(std::list<Watched> &threads, const std::shared_ptr<State> &self);
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
    ++progress.step;
    return true;
}

void Sweeper::State::deliver(Progress &progress, ObjectReader::Result result)
{
    const std::lock_guard lock(mutex);
    {
        const std::lock_guard progressLock(progress.mutex);
        if (progress.isAbandoned)
            return;
        progress.request.reset();
        progress.directory.clear();
        progress.name.clear();
    }
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
    bool isAbandoned = false;
    const auto permission = [&](const QByteArray &directory, const QByteArray &name) {
        {
            const std::lock_guard lock(progress.mutex);
            isAbandoned = progress.isAbandoned;
            progress.directory = directory;
            progress.name = name;
            ++progress.step;
        }
        return !isAbandoned && !isBlocked(directory, name);
    };
    ObjectReader reader(*root, forcedDevices, permission, recordsFiles);
    Request request;
    while (!isAbandoned && takeRequest(progress, request))
        deliver(progress, reader.read(request));
}

// The path that does not answer is left out and the object read again without it.
void Sweeper::State::giveUp(Progress &progress)
{
    const std::lock_guard lock(mutex);
    const std::lock_guard progressLock(progress.mutex);
    progress.isAbandoned = true;
    blockedPaths.insert(progress.directory + '/' + progress.name);
    hasBlockedPaths = true;
    queue.push_back(*progress.request);
    workOrEnd.notify_all();
}

int Sweeper::State::watch(std::list<Watched> &threads, std::chrono::milliseconds patience)
{
    int abandoned = 0;
    for (Watched &watched : threads) {
        bool isStuck = false;
        {
            const std::lock_guard lock(watched.progress->mutex);
            const Progress &progress = *watched.progress;
            if (progress.isAbandoned)
                continue;
            if (!progress.request || progress.step != watched.lastStep) {
                watched.lastStep = progress.step;
                watched.since = Clock::now();
            } else {
                isStuck = Clock::now() - watched.since >= patience;
            }
        }
        if (isStuck) {
            giveUp(*watched.progress);
            ++abandoned;
        }
    }
    return abandoned;
}

void Sweeper::State::startThread(std::list<Watched> &threads, const std::shared_ptr<State> &self)
{
    threads.emplace_back();
    // Detached: one that hangs in the kernel can be neither joined nor stopped.
    std::thread([self, progress = threads.back().progress] { self->work(*progress); }).detach();
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
        lock.unlock();
        for (int count = state->watch(threads, options_.patience); count > 0; --count)
            state->startThread(threads, state);
        lock.lock();
    }
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
