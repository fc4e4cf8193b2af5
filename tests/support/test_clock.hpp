// SPDX-License-Identifier: Apache-2.0
/** A clock for tests: the daemon's pauses and deadlines shrink, and the test can look at them. */
#pragma once

#include <chrono>
#include <functional>
#include <vector>

namespace vantric::test {

/** Real seconds for each of the daemon's seconds; 0 lets no time pass at all. First value: 1, or
 *  the environment's TEST_CLOCK_SCALE for a whole process under test. */
void SetClockScale(double scale);

/** Lets time pass for the calling thread, which otherwise passes in the daemon's pauses alone,
 *  unscaled: what the daemon sees as the age of a thing. */
void AdvanceClock(std::chrono::nanoseconds duration);

/** Runs hook in each pause from now on, on the thread that pauses and before any time passes; an
 *  empty one ends it. Any thread. */
void OnPause(std::function<void(std::chrono::seconds)> hook);

/** The pauses that the daemon's threads made since the last call, in order. */
std::vector<std::chrono::seconds> TakePauses();

} // namespace vantric::test
