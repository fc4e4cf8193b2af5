// SPDX-License-Identifier: Apache-2.0
/** How a described value moves. */
#pragma once

#include <chrono>
#include <variant>

namespace simulator {

/** Seconds since the simulator began. */
using Seconds = std::chrono::duration<double>;

/** Goes evenly from one value to another, and begins again. */
struct Ramp {
    double from = 0.0;
    double to = 0.0;
    double seconds = 60.0;
};

/** Swings around a mean. */
struct Sine {
    double mean = 0.0;
    double amplitude = 0.0;
    double period = 60.0; /**< seconds */
};

/** Goes up or down by up to a step at a time, and stays within its limits. */
struct RandomWalk {
    double start = 0.0;
    double step = 1.0;
    double least = 0.0;
    double most = 0.0;
    double every = 1.0; /**< seconds */
};

/** A value in the sensor's unit; a plain number stands still. */
using Motion = std::variant<double, Ramp, Sine, RandomWalk>;

} // namespace simulator
