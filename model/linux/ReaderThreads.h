// SPDX-License-Identifier: Apache-2.0
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

// The threads of one reading of a tree or a part of it. A slow step gets another thread beside it,
// so that nothing else waits; one that takes too long is interrupted, or left behind with its
// thread. Shared with the threads: lives as long as any of them hangs in the kernel.
class ReaderThreads : public std::enable_shared_from_this<ReaderThreads>
{
public:
    struct Plan
    {
        std::shared_ptr<const SysfsRoot> root;
        QSet<SysfsPath> forcedDevices;
        QSet<SysfsPath> blockedPaths;                        // are not tried
        std::shared_ptr<std::atomic<int>> threadsLeftBehind; // that hang, of all readings
        std::chrono::microseconds patience;
        unsigned threads = 1;
        bool interrupts = true; // false: as if no hanging step could be interrupted
        bool recordsFiles = false;
        bool isRecursive = true; // continue with the objects found below
        ReadingDetail detail = ReadingDetail::Everything;
        std::shared_ptr<SlowStep> slowStep = {}; // null: not watched
    };

    ReaderThreads(Plan plan, std::vector<ObjectReader::Request> requests);
    ~ReaderThreads();

    // Call once. When asked to stop, returns early with what it has.
    TreeContents perform(const std::stop_token &stop);
    // Those of the plan and those that did not answer. Call after perform.
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
    std::list<Watched> threads_;  // only the caller's thread
    std::atomic<int> active_ = 0; // threads not in a long step
    int waiting_ = 0;             // threads in one, not left behind; only the caller's thread
    int stepsGivenUp_ = 0;        // only the caller's thread

    std::mutex mutex_;                  // guards everything below and the blocked paths
    std::condition_variable workOrEnd_; // for the threads
    std::condition_variable finished_;  // for the watching caller
    std::deque<ObjectReader::Request> queue_;
    std::size_t unfinished_ = 0; // queued or being read
    bool isOver_ = false;
    std::atomic<bool> hasBlockedPaths_;
    TreeContents contents_;
};
