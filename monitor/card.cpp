// SPDX-License-Identifier: Apache-2.0
#include "card.hpp"

#include <algorithm>

namespace monitor {

const char* Word(Severity severity) {
    switch (severity) {
    case Severity::OK:
        return "ok";
    case Severity::WARNING:
        return "warning";
    case Severity::CRITICAL:
        return "critical";
    case Severity::FATAL:
        return "fatal";
    case Severity::UNKNOWN:
        break;
    }
    return "unknown";
}

const char* Word(Reading reading) {
    switch (reading) {
    case Reading::OK:
        return "ok";
    case Reading::UNAVAILABLE:
        return "unavailable";
    case Reading::NOT_READ:
        return "not read";
    case Reading::FAILED:
        return "failed";
    case Reading::NONE:
        break;
    }
    return "no reading";
}

Severity Card::Worst() const {
    Severity worst = health;
    for (const Sensor& sensor : sensors) {
        worst = std::max(worst, sensor.severity);
    }
    for (const State& state : states) {
        worst = std::max(worst, state.severity);
    }
    return worst;
}

} // namespace monitor
