// SPDX-License-Identifier: Apache-2.0
/** When a device is asked and shown again: its thread's pauses, and what isn't due in every cycle.
 *  What one exchange waits for stands with the transport. */
#pragma once

#include <chrono>
#include <cstdint>

namespace vantric {

/** After each monitor cycle. */
inline constexpr std::chrono::seconds cyclePause{5};

/** Before an inventory is tried again, and a cycle, that gave way to an endpoint table. */
inline constexpr std::chrono::seconds retryPause{5};

/** Before another look at a state in which there is nothing to do. */
inline constexpr std::chrono::seconds idlePause{5};

/** The same where only a table can help. */
inline constexpr std::chrono::seconds switchPause{10};

/** What is counted down after a failure over I2C, an idlePause at a time. */
inline constexpr std::chrono::seconds waitAfterFailure{120};

/** For the bus's clients to see that objects have gone, before new ones come. */
inline constexpr std::chrono::seconds removalPause{2};

/** Cycles between two looks at the firmware version and the PDR repository. */
inline constexpr std::uint8_t cyclesBetweenChecks = 10;

/** Cycles between two readings of the state sensors; with several controllers each cycle has one.
 */
inline constexpr std::uint8_t cyclesBetweenStates = 6;

/** Ages at which an accelerator's three groups of numeric sensors are read again. */
inline constexpr std::chrono::seconds fastAge{1};
inline constexpr std::chrono::seconds mediumAge{10};
inline constexpr std::chrono::seconds slowAge{20};

/** Failed cycles over I2C for which a network card has patience after each inventory. */
inline constexpr std::uint8_t toleratedFailures = 5;

} // namespace vantric
