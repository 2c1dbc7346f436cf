#pragma once

#include "model/linux/ObjectReader.h"
#include "model/linux/SlowStep.h"
#include "model/linux/TreeContents.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <list>
#include <mutex>
#include <stop_token>
#include <thread>

// One reading of a tree, or of a part of it, by a few threads. A step that takes long gets another
// thread beside it, so that it keeps nothing else waiting; one that takes too long is interrupted,
// and where that does not help, left behind with its thread. Shared with the threads: it lives on
// as long as one of them hangs in the kernel.
class ReaderThreads : public std::enable_shared_from_this<ReaderThreads>
{
public:
    struct Plan
    {
        std::shared_ptr<const SysfsRoot> root;
        QSet<SysfsPath> forcedDevices;
        QSet<SysfsPath> blockedPaths;                        // not to be tried
        std::shared_ptr<std::atomic<int>> threadsLeftBehind; // those that hang, of all runs
        std::chrono::microseconds patience;
        unsigned threads = 1;
        bool interrupts = true; // false: takes every step that hangs for one that cannot be
        bool recordsFiles = false;
        bool goesOn = true;                      // to the objects found below
        std::shared_ptr<SlowStep> slowStep = {}; // null: nobody watches
    };

    ReaderThreads(Plan plan, std::vector<ObjectReader::Request> requests);
    ~ReaderThreads();

    // Once. Ends early, with what it has, when asked to stop.
    TreeContents perform(const std::stop_token &stop);
    // Those of the plan and what has not answered since. When it has ended.
    const QSet<SysfsPath> &blockedPaths() const { return plan_.blockedPaths; }

private:
    using Clock = std::chrono::steady_clock;
    struct Progress;
    struct Watched
    {
        std::shared_ptr<Progress> progress;
        quint64 lastStep = 0;
        Clock::time_point since;
        Clock::time_point givenUp;
        std::jthread thread;
    };
    class StepWatch;

    void add(ObjectReader::Request request);
    bool isBlocked(const SysfsPath &directory, const QByteArray &name);
    void end();

    void startThread();
    void work(Progress &progress);
    bool takeRequest(Progress &progress, ObjectReader::Request &request);
    void deliver(ObjectReader::Result result);

    void watch(std::unique_lock<std::mutex> &lock);
    void watch(Watched &watched);
    void nameLongestStep();
    bool isSkipped(const Progress &progress) const;
    void giveUp(Progress &progress);
    void leaveBehind(Progress &progress);
    std::chrono::microseconds patience() const;
    int threadsToSpare() const;
    void startMissingThreads();
    void readRestWithoutAttributes(std::unique_lock<std::mutex> &lock);
    void leave();

    Plan plan_;
    std::list<Watched> threads_;  // by the asker alone
    std::atomic<int> active_ = 0; // threads that are in no long step
    int waiting_ = 0;             // threads that are in one, not left behind; by the asker alone
    int stepsGivenUp_ = 0;        // by the asker alone

    std::mutex mutex_;                  // of all below, and the blocked paths
    std::condition_variable workOrEnd_; // for the threads
    std::condition_variable finished_;  // for the watch
    std::deque<ObjectReader::Request> queue_;
    std::size_t unfinished_ = 0; // queued or being read
    bool isOver_ = false;
    std::atomic<bool> hasBlockedPaths_;
    TreeContents contents_;
};
