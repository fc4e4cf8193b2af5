// SPDX-License-Identifier: Apache-2.0
#include "worker.hpp"

#include <pthread.h>
#include <utility>

namespace platform_support {

Worker::Worker(const char* name) : queue(std::make_shared<Queue>()) {
    // The thread shares the queue, since it may outlive the worker that one of its jobs destroys.
    thread = std::thread([shared = queue] { Run(shared); });
    pthread_setname_np(thread.native_handle(), name);
}

Worker::~Worker() {
    Stop();
}

void Worker::Post(std::function<void()> job) {
    {
        const std::lock_guard lock(queue->mutex);
        if (queue->stopped) {
            return;
        }
        queue->jobs.push_back(std::move(job));
    }
    queue->changed.notify_one();
}

void Worker::Stop() {
    {
        const std::lock_guard lock(queue->mutex);
        queue->stopped = true;
        queue->jobs.clear();
    }
    queue->changed.notify_one();
    JoinOrLeave(thread);
}

void Worker::Run(const std::shared_ptr<Queue>& queue) {
    std::unique_lock lock(queue->mutex);
    while (true) {
        queue->changed.wait(lock, [&] { return queue->stopped || !queue->jobs.empty(); });
        if (queue->stopped) {
            return;
        }
        {
            const auto job = std::move(queue->jobs.front());
            queue->jobs.pop_front();
            lock.unlock();
            job();
        }
        lock.lock();
    }
}

void JoinOrLeave(std::thread& thread) {
    if (!thread.joinable()) {
        return;
    }
    if (thread.get_id() == std::this_thread::get_id()) {
        thread.detach();
    } else {
        thread.join();
    }
}

} // namespace platform_support
