// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <chrono>
#include <functional>
#include <future>
#include <memory>
#include <stop_token>
#include <system_error>
#include <thread>

// Runs work in a thread of its own, or in the caller's where none can be started. The destructor
// asks the work to stop and waits for it.
template<class Result>
class BackgroundTask
{
public:
    // Starts. The work takes a stop token; finished is called in the thread.
    template<class Work>
    BackgroundTask(Work work, std::function<void()> finished)
    {
        const auto task =
            std::make_shared<std::packaged_task<Result(const std::stop_token &)>>(std::move(work));
        result_ = task->get_future();
        const auto perform = [task, finished = std::move(finished)](const std::stop_token &stop) {
            (*task)(stop);
            finished();
        };
        try {
            thread_ = std::jthread(perform);
        } catch (const std::system_error &) {
            perform({});
        }
    }

    bool waitFor(std::chrono::milliseconds timeout) const // whether it has finished
    {
        return result_.wait_for(timeout) == std::future_status::ready;
    }
    void requestStop() { thread_.request_stop(); }
    Result take() { return result_.get(); } // once; blocks

private:
    std::future<Result> result_;
    std::jthread thread_;
};
