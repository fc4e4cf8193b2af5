// SPDX-License-Identifier: Apache-2.0
#include "support/test_clock.hpp"

#include "common/pause.hpp"

#include <atomic>
#include <cstdlib>
#include <thread>
#include <utility>

namespace vantric {

namespace {

double FirstScale() {
    const char* text = std::getenv("TEST_CLOCK_SCALE");
    return text != nullptr ? std::strtod(text, nullptr) : 1.0;
}

/** The most that is kept for TakePauses; a process that is never asked must not grow. */
constexpr std::size_t pausesKept = 10000;

std::atomic<double>& Scale() {
    static std::atomic<double> scale{FirstScale()};
    return scale;
}

/** What Now() tells: a thread's own time, which passes in its pauses alone. */
thread_local std::chrono::steady_clock::time_point now;

std::mutex pausesMutex;
std::vector<std::chrono::seconds> pauses;
std::function<void(std::chrono::seconds)> pauseHook;

std::chrono::nanoseconds Scaled(std::chrono::seconds duration) {
    return std::chrono::duration_cast<std::chrono::nanoseconds>(
        std::chrono::duration<double>(duration) * Scale().load());
}

} // namespace

void Pause(std::chrono::seconds duration) {
    std::function<void(std::chrono::seconds)> hook;
    {
        const std::scoped_lock lock(pausesMutex);
        hook = pauseHook;
        if (pauses.size() < pausesKept) {
            pauses.push_back(duration);
        }
    }
    if (hook) {
        hook(duration);
    }
    std::this_thread::sleep_for(Scaled(duration));
    now += duration;
}

std::chrono::steady_clock::time_point Now() {
    return now;
}

bool WaitFor(std::condition_variable& cond, std::unique_lock<std::mutex>& lock,
             std::chrono::seconds timeout, const std::function<bool()>& done) {
    return cond.wait_until(lock, std::chrono::steady_clock::now() + Scaled(timeout), done);
}

} // namespace vantric

namespace vantric::test {

void SetClockScale(double scale) {
    Scale() = scale;
}

void AdvanceClock(std::chrono::nanoseconds duration) {
    now += duration;
}

void OnPause(std::function<void(std::chrono::seconds)> hook) {
    const std::scoped_lock lock(pausesMutex);
    pauseHook = std::move(hook);
}

std::vector<std::chrono::seconds> TakePauses() {
    const std::scoped_lock lock(pausesMutex);
    return std::exchange(pauses, {});
}

} // namespace vantric::test
