// SPDX-License-Identifier: Apache-2.0
/** What a poll of an endpoint's sensors hands to modeling: changes only. */
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace vantric {

/** Sensor id to (sensorNeededFor, value). The value is in whole units of the sensor's base unit,
 *  in degrees Celsius for every temperature, or readingUnavailable. */
using ReadingMap = std::map<std::uint16_t, std::pair<std::uint8_t, std::int32_t>>;

/** All members of a state sensor of which at least one has changed: three parallel vectors. */
struct StateChange {
    std::vector<std::uint8_t> presentStates;
    std::vector<std::uint16_t> stateSetIds; ///< 0 where the reading failed
    std::vector<std::string> memberNames;
};

/** Sensor id to what changed. */
using StateChangeMap = std::unordered_map<std::uint16_t, StateChange>;

} // namespace vantric
