// SPDX-License-Identifier: Apache-2.0
/** A thread with a queue. */
#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

namespace platform_support {

/** Runs jobs one after the other on a thread of its own. */
class Worker {
public:
    /** Starts the thread; name has at most 15 characters. */
    explicit Worker(const char* name);
    ~Worker();

    /** Appends a job; it is dropped if the worker has been stopped. */
    void Post(std::function<void()> job);

    /** Drops the jobs that wait, and returns when none runs any more. On the worker's own thread
     *  it returns at once, and the job that called it is the last. */
    void Stop();

private:
    struct Queue {
        std::mutex mutex;
        std::condition_variable changed;
        std::deque<std::function<void()>> jobs;
        bool stopped = false;
    };

    static void Run(const std::shared_ptr<Queue>& queue);

    std::shared_ptr<Queue> queue;
    std::thread thread;
};

/** Ends a thread's life with its owner: joins it, or lets it go if it is the calling thread. */
void JoinOrLeave(std::thread& thread);

} // namespace platform_support
