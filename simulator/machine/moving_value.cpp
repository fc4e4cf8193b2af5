// SPDX-License-Identifier: Apache-2.0
#include "machine/moving_value.hpp"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace simulator {

namespace {

double Evaluate(const Ramp& ramp, Seconds now) {
    const double part = std::fmod(now.count(), ramp.seconds) / ramp.seconds;
    return ramp.from + (ramp.to - ramp.from) * part;
}

double Evaluate(const Sine& sine, Seconds now) {
    return sine.mean +
           sine.amplitude * std::sin(2.0 * std::numbers::pi * now.count() / sine.period);
}

} // namespace

MovingValue::MovingValue(const Motion& motion, std::uint32_t seed) : motion(motion), random(seed) {
    if (const auto* const walk = std::get_if<RandomWalk>(&motion)) {
        walked = walk->start;
    }
}

double MovingValue::At(Seconds now) {
    if (fixed) {
        return *fixed;
    }
    if (const auto* const constant = std::get_if<double>(&motion)) {
        return *constant;
    }
    if (const auto* const ramp = std::get_if<Ramp>(&motion)) {
        return Evaluate(*ramp, now);
    }
    if (const auto* const sine = std::get_if<Sine>(&motion)) {
        return Evaluate(*sine, now);
    }
    return Walk(std::get<RandomWalk>(motion), now);
}

double MovingValue::Walk(const RandomWalk& walk, Seconds now) {
    // Steps between two readings are never seen: after a long pause the last ones are enough.
    constexpr std::uint64_t stepsAtOnce = 1000;
    const auto due = static_cast<std::uint64_t>(now.count() / walk.every);
    if (due > steps + stepsAtOnce) {
        steps = due - stepsAtOnce;
    }
    std::uniform_real_distribution<double> step(-walk.step, walk.step);
    for (; steps < due; ++steps) {
        walked = std::clamp(walked + step(random), walk.least, walk.most);
    }
    return walked;
}

} // namespace simulator
