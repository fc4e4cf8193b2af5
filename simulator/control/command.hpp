// SPDX-License-Identifier: Apache-2.0
/** Commands to a simulator that runs. */
#pragma once

#include <span>
#include <string>

namespace simulator {

/** What became of a command. */
struct Outcome {
    bool good = false;
    std::string text; ///< what the simulator says, or why there is no answer
};

/** Has the simulator at SIMULATOR_SOCKET carry out a command, such as {"set", "31", "5", "55"}, and
 *  waits for the end. One that waits itself says how long in its last word. */
Outcome Command(std::span<const std::string> words);

} // namespace simulator
