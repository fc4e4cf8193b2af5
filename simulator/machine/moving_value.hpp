// SPDX-License-Identifier: Apache-2.0
/** A value that moves with time. */
#pragma once

#include "scenario/sensor_value.hpp"

#include <cstdint>
#include <optional>
#include <random>

namespace simulator {

/** Follows a described motion until it is fixed. The same seed gives the same walk. */
class MovingValue {
public:
    MovingValue(const Motion& motion, std::uint32_t seed);

    /** The value at a time, which doesn't go back from call to call. */
    double At(Seconds now);

    /** Makes the value stand still, or move again. */
    void Fix(double value) { fixed = value; }
    void Release() { fixed.reset(); }

private:
    double Walk(const RandomWalk& walk, Seconds now);

    Motion motion;
    std::optional<double> fixed;
    std::mt19937 random;
    double walked = 0.0;     // where a random walk is
    std::uint64_t steps = 0; // and how many steps it has made
};

} // namespace simulator
