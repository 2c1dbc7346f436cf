// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/linux/ObjectReader.h"
#include "model/linux/SlowStep.h"
#include "model/linux/TreeContents.h"

#include <atomic>
#include <chrono>
#include <memory>
#include <stop_token>

// Reads a whole sysfs tree or one object in a few threads of its own. A step that does not return
// in time is given up and its path left out from then on; an attribute is then listed as unread in
// its object. After two such attributes the object's others are skipped. Used from one thread at a
// time.
class TreeReader
{
public:
    struct Options
    {
        unsigned threads = 0; // 0: depends on the number of processors
        std::chrono::milliseconds patience{2000};
        bool interrupts = true; // hanging steps; false: as if interrupting did not help
        bool recordsFiles = false;
        ReadingDetail detail = ReadingDetail::Everything; // of whole trees
    };

    explicit TreeReader(std::shared_ptr<const SysfsRoot> root);
    TreeReader(std::shared_ptr<const SysfsRoot> root, Options options);

    // When asked to stop, returns early with what it has.
    TreeContents run(const std::stop_token &stop = {});
    // Adopts what a copy of this reader learnt not to try again.
    void learnFrom(const TreeReader &other);
    void forgetWhatDidNotAnswer() { blockedPaths_.clear(); }
    // Watches the next readings; null: not watched.
    void setSlowStep(std::shared_ptr<SlowStep> slowStep) { slowStep_ = std::move(slowStep); }

    // Empty when the object is gone.
    RawObject readObject(const ObjectReader::Request &request, const std::stop_token &stop = {});
    // Without those that are gone, in no particular order.
    std::vector<RawObject> readObjects(std::vector<ObjectReader::Request> requests);
    ReadingDetail detail() const { return options_.detail; }

private:
    TreeContents runFromTop(const std::stop_token &stop);
    std::vector<ObjectReader::Request> firstRequests(std::vector<RawObject::Unread> &unread) const;
    TreeContents run(std::vector<ObjectReader::Request> requests, bool isRecursive,
                     const std::stop_token &stop = {});
    bool findForcedDevices(const TreeContents &contents);

    std::shared_ptr<const SysfsRoot> root_;
    Options options_;
    std::shared_ptr<SlowStep> slowStep_;
    std::shared_ptr<std::atomic<int>> threadsLeftBehind_; // shared between copies
    QSet<SysfsPath> blockedPaths_;                        // did not return; not tried again
    QSet<SysfsPath> forcedDevices_; // without uevent, but a class or bus links to them
};
