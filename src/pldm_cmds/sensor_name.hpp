// SPDX-License-Identifier: Apache-2.0
/** Names of numeric sensors that have none of their own. */
#pragma once

#include "vocabulary/reading.hpp"

#include <cstdint>
#include <string>

namespace vantric {

/** "power" or "temp" with the sensor id: "temp5". */
inline std::string DefaultSensorName(std::uint8_t baseUnit, std::uint16_t sensorId) {
    return (baseUnit == BASE_UNIT_WATTS ? "power" : "temp") + std::to_string(sensorId);
}

} // namespace vantric
