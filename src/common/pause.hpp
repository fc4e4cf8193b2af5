// SPDX-License-Identifier: Apache-2.0
/** The one seam between the daemon and the clock.
 *
 * pause.cpp is the real clock. A test executable links another implementation in its place, so that
 * the daemon's pauses and deadlines need no waiting for. */
#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>

namespace vantric {

/** Blocks the calling thread for the whole time; a signal doesn't cut it short. */
void Pause(std::chrono::seconds duration);

/** The monotonic clock, for ages: what it counts from means nothing. */
std::chrono::steady_clock::time_point Now();

/** Waits on cond, with lock held on entry and exit, until done() holds or timeout has passed on the
 *  monotonic clock. done() is called with the lock held. Returns the last done(). */
bool WaitFor(std::condition_variable& cond, std::unique_lock<std::mutex>& lock,
             std::chrono::seconds timeout, const std::function<bool()>& done);

} // namespace vantric
