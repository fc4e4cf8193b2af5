// SPDX-License-Identifier: Apache-2.0
/** What is due once in several monitor cycles. */
#pragma once

#include <cstdint>

namespace vantric {

/** Counts the cycles since something was done. */
class CycleCounter {
public:
    /** @param period cycles from one time to the next
     *  @param passed those that count as passed at first */
    constexpr CycleCounter(std::uint8_t period, std::uint8_t passed)
        : period(period), passed(passed) {}

    bool IsDue() const { return passed >= period; }

    /** It is being done. */
    void Restart() { passed = 0; }

    /** Another cycle has passed. */
    void Count() {
        if (!IsDue()) {
            ++passed;
        }
    }

private:
    std::uint8_t period;
    std::uint8_t passed;
};

} // namespace vantric
