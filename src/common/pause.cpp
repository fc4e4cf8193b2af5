// SPDX-License-Identifier: Apache-2.0
#include "common/pause.hpp"

#include <cerrno>
#include <ctime>

namespace vantric {

void Pause(std::chrono::seconds duration) {
    timespec left{.tv_sec = static_cast<time_t>(duration.count()), .tv_nsec = 0};
    while (nanosleep(&left, &left) != 0 && errno == EINTR) {
    }
}

std::chrono::steady_clock::time_point Now() {
    return std::chrono::steady_clock::now();
}

bool WaitFor(std::condition_variable& cond, std::unique_lock<std::mutex>& lock,
             std::chrono::seconds timeout, const std::function<bool()>& done) {
    // A steady deadline becomes pthread_cond_clockwait on the monotonic clock, so that a step of
    // the wall clock neither shortens nor lengthens the wait.
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    return cond.wait_until(lock, deadline, done);
}

} // namespace vantric
