#pragma once

#include "model/linux/ObjectReader.h"
#include "model/linux/SlowStep.h"
#include "model/linux/TreeContents.h"

#include <atomic>
#include <chrono>
#include <memory>
#include <stop_token>

// Reads a whole sysfs tree, or one object, in a few threads of its own. A step that does not
// return in time is given up and its path left out from then on; an attribute's is named among the
// unread ones of its object. After two of them the rest of the object's are let be. Used from one
// thread at a time.
class TreeReader
{
public:
    struct Options
    {
        unsigned threads = 0; // 0: by the number of processors
        std::chrono::milliseconds patience{2000};
        bool interrupts = true; // a step that does not answer; false: as if that did not help
        bool recordsFiles = false;
    };

    explicit TreeReader(std::shared_ptr<const SysfsRoot> root);
    TreeReader(std::shared_ptr<const SysfsRoot> root, Options options);

    // Ends early, with what it has, when asked to stop.
    TreeContents run(const std::stop_token &stop = {});
    // Takes over what another one, made from this, has learnt not to try again.
    void learnFrom(const TreeReader &other);
    void forgetWhatDidNotAnswer() { blockedPaths_.clear(); }
    // By whom the next readings are watched; null: by nobody.
    void setSlowStep(std::shared_ptr<SlowStep> slowStep) { slowStep_ = std::move(slowStep); }

    // Empty when it is gone.
    RawObject readObject(const ObjectReader::Request &request, const std::stop_token &stop = {});

private:
    TreeContents runFromTop(const std::stop_token &stop);
    std::vector<ObjectReader::Request> firstRequests(std::vector<RawObject::Unread> &unread) const;
    TreeContents run(std::vector<ObjectReader::Request> requests, bool goesOn,
                     const std::stop_token &stop = {});
    bool findForcedDevices(const TreeContents &contents);

    std::shared_ptr<const SysfsRoot> root_;
    Options options_;
    std::shared_ptr<SlowStep> slowStep_;
    std::shared_ptr<std::atomic<int>> threadsLeftBehind_; // shared by the copies
    QSet<SysfsPath> blockedPaths_;                        // did not return; never tried again
    QSet<SysfsPath> forcedDevices_; // have no uevent, but a class or bus points at them
};
